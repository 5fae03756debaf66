#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/OPMPropertyEntry.h"
#include "platform/OdOPMClientExtension.h"
#include "platform/PcDbPointCloud.h"
#include "viewer/document/Entity.h"
#include "viewer/engine/Property.h"

namespace vpc::viewer {

/// The property palette, as the plug-in's extension fills it. The extension does not tell which
/// properties can be set, nor does it refuse senseless values, so every value is tried on a copy of
/// the entity first.
class Palette {
public:
    explicit Palette(OdOPMClientExtension& extension) : extension_(extension) {}

    std::vector<Property> List(const PcDbPointCloud& entity) const;
    /// Returns a sentence where the value was not taken.
    std::string Set(PcDbPointCloud& entity, int property, const Property::Value& value) const;

private:
    OdArray<OPMPropertyEntry> Entries() const;
    /// Null where it has none now.
    OPMVariant ValueOf(const PcDbPointCloud& entity, const OPMPropertyEntry& entry) const;
    /// What the entity would be with another value; nothing where the extension does not take it.
    std::optional<Entity> Tried(const PcDbPointCloud& entity, const OPMPropertyEntry& entry,
                                const OPMVariant& value) const;
    bool CanBeSet(const PcDbPointCloud& entity, const OPMPropertyEntry& entry,
                  const OPMVariant& value) const;

    OdOPMClientExtension& extension_;
};

}  // namespace vpc::viewer
