#pragma once

#include <vector>

#include "platform/OdPlatform.h"

class OdOPMClientExtension;

/// Stand-in for the host's list of property extensions, none of which it owns.
class OD_EXPORT OdOPMExtensionManager {
public:
    void addExtension(OdOPMClientExtension* extension);
    void removeExtension(OdOPMClientExtension* extension);

    /// The extensions in the order in which they were added.
    const std::vector<OdOPMClientExtension*>& extensions() const { return extensions_; }

private:
    std::vector<OdOPMClientExtension*> extensions_;
};

/// The only manager of the host; never null.
OD_EXPORT OdOPMExtensionManager* odOPMExtensionManager();
