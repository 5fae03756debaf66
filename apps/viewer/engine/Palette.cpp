#include "viewer/engine/Palette.h"

#include <algorithm>
#include <utility>

#include "viewer/engine/HostEntity.h"
#include "viewer/engine/HostText.h"
#include "viewer/engine/HostView.h"

namespace vpc::viewer {

namespace {

Property::Value toValue(const OPMVariant& value) {
    switch (value.varType()) {
        case OPMVariant::kBool:
            return value.getBool();
        case OPMVariant::kInt:
            return static_cast<long long>(value.getInt());
        case OPMVariant::kDouble:
            return value.getDouble();
        case OPMVariant::kString:
            return fromHostText(value.getString());
        case OPMVariant::kNull:
            break;
    }
    return {};
}

/// A choice is read as its number and set as its text.
OPMVariant settable(const OPMVariant& value, const OPMPropertyEntry& entry) {
    const auto& choices = entry.predefinedStrings;
    if (choices.isEmpty() || value.varType() != OPMVariant::kInt) return value;
    const OdInt64 choice = value.getInt();
    if (choice < 0 || choice >= OdInt64{choices.size()}) return {};
    return OPMVariant(choices[static_cast<unsigned>(choice)]);
}

/// The user's value as the extension takes it; null where it is no value of that property.
OPMVariant toVariant(const Property::Value& value, const OPMPropertyEntry& entry,
                     OPMVariant::Type type) {
    const auto& choices = entry.predefinedStrings;
    if (const auto* const text = std::get_if<std::string>(&value)) {
        const OdString wide = toHostText(*text);
        const bool isKnown = choices.isEmpty()
                                 ? type == OPMVariant::kString
                                 : std::find(choices.begin(), choices.end(), wide) != choices.end();
        return isKnown ? OPMVariant(wide) : OPMVariant();
    }
    if (const auto* const truth = std::get_if<bool>(&value)) return OPMVariant(*truth);
    if (const auto* const number = std::get_if<double>(&value)) return OPMVariant(*number);
    const auto* const count = std::get_if<long long>(&value);
    if (count == nullptr) return {};
    if (type == OPMVariant::kDouble) return OPMVariant(static_cast<double>(*count));
    return settable(OPMVariant(OdInt64{*count}), entry);
}

}  // namespace

OdArray<OPMPropertyEntry> Palette::Entries() const {
    OdArray<OPMPropertyEntry> entries;
    extension_.getPropertyMap(PcDbPointCloud::desc(), entries);
    return entries;
}

OPMVariant Palette::ValueOf(const PcDbPointCloud& entity, const OPMPropertyEntry& entry) const {
    OPMVariant value;
    return extension_.getPropertyValue(&entity, entry.id, entry.name, value) ? value : OPMVariant();
}

std::optional<Entity> Palette::Tried(const PcDbPointCloud& entity, const OPMPropertyEntry& entry,
                                     const OPMVariant& value) const {
    PcDbPointCloud copy;
    setState(copy, stateOf(entity, {}));
    if (!extension_.setPropertyValue(&copy, entry.id, entry.name, value)) return std::nullopt;
    return stateOf(copy, {});
}

bool Palette::CanBeSet(const PcDbPointCloud& entity, const OPMPropertyEntry& entry,
                       const OPMVariant& value) const {
    if (!Tried(entity, entry, settable(value, entry))) return false;
    if (!entity.locked() || value.varType() != OPMVariant::kDouble) return true;
    const auto moved = Tried(entity, entry, OPMVariant(2.0 * value.getDouble() + 1.0));
    return moved && moved->placement == stateOf(entity, {}).placement;
}

std::vector<Property> Palette::List(const PcDbPointCloud& entity) const {
    const auto entries = Entries();
    std::vector<Property> list;
    for (const OPMPropertyEntry& entry : entries) {
        const OPMVariant value = ValueOf(entity, entry);
        Property property{entry.id, fromHostText(entry.name), fromHostText(entry.category),
                          {},       toValue(value),           CanBeSet(entity, entry, value)};
        for (const OdString& choice : entry.predefinedStrings)
            property.choices.push_back(fromHostText(choice));
        list.push_back(std::move(property));
    }
    return list;
}

std::string Palette::Set(PcDbPointCloud& entity, int property, const Property::Value& value) const {
    const auto entries = Entries();
    const auto* const entry =
        std::find_if(entries.begin(), entries.end(),
                     [property](const OPMPropertyEntry& one) { return one.id == property; });
    if (entry == entries.end()) return "The palette knows no such property.";
    const std::string name = quoted(fromHostText(entry->name));
    const OPMVariant variant = toVariant(value, *entry, ValueOf(entity, *entry).varType());
    if (variant.varType() == OPMVariant::kNull) return "That is no value for " + name + ".";
    const auto tried = Tried(entity, *entry, variant);
    if (!tried) return name + " cannot be set to that.";
    const Entity before = stateOf(entity, {});
    if (tried->placement != before.placement) {
        if (before.locked && tried->locked)
            return quoted(before.name) + " is locked and stays where it is. Unlock it first.";
        if (!isSound(tried->placement))
            return name + " has to be a number" +
                   (tried->placement.scale == before.placement.scale ? "." : " above 0.");
    }
    extension_.setPropertyValue(&entity, entry->id, entry->name, variant);
    return {};
}

}  // namespace vpc::viewer
