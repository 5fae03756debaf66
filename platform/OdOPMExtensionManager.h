#pragma once

#include <vector>

#include "platform/OdPlatform.h"

class OdOPMClientExtension;

/// Stand-in for the host's list of what knows properties. It owns none of them.
class OD_EXPORT OdOPMExtensionManager {
public:
    void addExtension(OdOPMClientExtension* extension);
    void removeExtension(OdOPMClientExtension* extension);

    /// In the order in which they came.
    const std::vector<OdOPMClientExtension*>& extensions() const { return extensions_; }

private:
    std::vector<OdOPMClientExtension*> extensions_;
};

/// The host's one manager; never null.
OD_EXPORT OdOPMExtensionManager* odOPMExtensionManager();
