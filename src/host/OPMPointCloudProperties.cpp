#include "host/OPMPointCloudProperties.h"

#include <algorithm>

#include "core/util/DrawingUnits.h"
#include "platform/GiPointSetDefinition.h"
#include "platform/OdDbDatabase.h"
#include "platform/OdDbUnits.h"
#include "platform/OdOPMExtensionManager.h"
#include "platform/PcDbPointCloudDef.h"

namespace {

enum PropertyId : int {
    Id_EntityKind = 1,
    Id_Name = 2,
    Id_Stylization = 3,
    Id_ColorScheme = 4,
    Id_InsertionX = 5,
    Id_InsertionY = 6,
    Id_InsertionZ = 7,
    Id_Rotation = 8,
    Id_Scale = 9,
    Id_SavedPath = 10,
    Id_Cropped = 11,
    Id_Locked = 12,
    Id_Geolocate = 13,
    Id_Segmentation = 14,
    Id_Unit = 15,
    Id_UnitFactor = 16,
    Id_TotalNrPoints = 17,
    Id_VisibleNrPoints = 18
};

/// The host's codes of the palette's editors.
enum EditorType : int {
    Editor_Count = 1,
    Editor_Truth = 2,
    Editor_Length = 4,
    Editor_Angle = 5,
    Editor_Factor = 6,
    Editor_Text = 9,
    Editor_Path = 50,
    Editor_Choice = 60
};

/// The host's numbers for the stylization of an entity. They differ from GiPcStylizationType.
enum HostStylization : int { Host_ScanColors = 1, Host_Elevation = 4, Host_Intensity = 5 };

using Strings = OdArray<OdString>;

// The index of a text is the value of its property.

const Strings& stylizationNames() {
    static const Strings names{L"Scan colors", L"Intensity", L"Elevation"};
    return names;
}

const Strings& schemeNames() {
    static const Strings names{L"Scan", L"Spectrum", L"Earth",  L"Hydro",
                               L"Gray", L"Reds",     L"Greens", L"Blues"};
    return names;
}

/// The host's stylizations in the order of their names.
constexpr HostStylization stylizations[] = {Host_ScanColors, Host_Intensity, Host_Elevation};

/// The index of a name; 0 for any other text.
int placeOf(const OdString& text, const Strings& names) {
    const auto found = std::find(names.begin(), names.end(), text);
    return found == names.end() ? 0 : static_cast<int>(found - names.begin());
}

/// The index of a stylization's name; 0 for a stylization that has none here.
int placeOf(OdInt32 stylization) {
    const auto found = std::find(std::begin(stylizations), std::end(stylizations), stylization);
    return found == std::end(stylizations) ? 0 : static_cast<int>(found - std::begin(stylizations));
}

OPMPropertyEntry entry(PropertyId id, const wchar_t* name, const OdString& category,
                       EditorType type, const Strings& predefined = {}) {
    OPMPropertyEntry property;
    property.id = id;
    property.name = name;
    property.category = category;
    property.type = type;
    property.predefinedStrings = predefined;
    return property;
}

OPMVariant integer(unsigned long long count) {
    return OPMVariant(static_cast<OdInt64>(count));
}

OPMVariant unitName(const GiPointSetDefinition& set) {
    const std::string name = vpc::DrawingUnits::Name(set.getPointModelUnit());
    return OPMVariant(OdString(name.empty() ? "Undefined" : name.c_str()));
}

OPMVariant unitFactor(const GiPointSetDefinition& set, const OdDbDatabase* drawing) {
    if (drawing == nullptr) return {};
    const OdUInt32 code = set.getPointModelUnit();
    const bool isUnit = !vpc::DrawingUnits::Name(code).empty();
    const auto modelUnit = static_cast<OdDb::UnitsValue>(isUnit ? code : 0);
    return OPMVariant(oddbGetUnitsConversion(modelUnit, drawing->getINSUNITS()));
}

/// The value of a property that the loaded points know.
OPMVariant pointSetValue(const GiPointSetDefinition& set, const OdDbDatabase* drawing, int id) {
    switch (id) {
        case Id_Unit:
            return unitName(set);
        case Id_UnitFactor:
            return unitFactor(set, drawing);
        case Id_VisibleNrPoints:
            return integer(set.getNrVisiblePoints());
        default:
            return {};
    }
}

/// The value of a property that the definition or its loaded points know.
OPMVariant definitionValue(const PcDbPointCloud& cloud, int id) {
    const auto object = cloud.pointCloudDefExId().openObject();
    if (id == Id_SavedPath) {
        const auto shown = OdDbPointCloudDefEx::cast(object);
        return shown == nullptr ? OPMVariant() : OPMVariant(shown->activeFileName());
    }
    const auto definition = PcDbPointCloudDef::cast(object);
    if (definition == nullptr) return {};
    if (id == Id_TotalNrPoints) return integer(definition->totalPointsCount());
    const GiPointSetDefinition* set = definition->pointSet();
    return set == nullptr ? OPMVariant() : pointSetValue(*set, cloud.database(), id);
}

/// The type of the values that a property can be set to; kNull for a property that is read-only.
OPMVariant::Type settableType(int id) {
    switch (id) {
        case Id_Name:
        case Id_Stylization:
        case Id_ColorScheme:
            return OPMVariant::kString;
        case Id_InsertionX:
        case Id_InsertionY:
        case Id_InsertionZ:
        case Id_Rotation:
        case Id_Scale:
            return OPMVariant::kDouble;
        case Id_Cropped:
        case Id_Locked:
            return OPMVariant::kBool;
        default:
            return OPMVariant::kNull;
    }
}

void setCoordinate(PcDbPointCloud& cloud, double OdGePoint3d::*axis, double value) {
    OdGePoint3d location = cloud.location();
    location.*axis = value;
    cloud.setLocation(location);
}

/// Keeps an entity open for writing while it lives.
class OpenForWrite {
public:
    explicit OpenForWrite(PcDbPointCloud& cloud) : cloud_(cloud) { cloud_.upgradeOpen(); }
    ~OpenForWrite() { cloud_.downgradeOpen(); }
    OpenForWrite(const OpenForWrite&) = delete;
    OpenForWrite& operator=(const OpenForWrite&) = delete;

private:
    PcDbPointCloud& cloud_;
};

}  // namespace

OPMPointCloudProperties::OPMPointCloudProperties() {
    odOPMExtensionManager()->addExtension(this);
}

OPMPointCloudProperties::~OPMPointCloudProperties() {
    odOPMExtensionManager()->removeExtension(this);
}

void OPMPointCloudProperties::getPropertyMap(const OdRxClass* /*entityClass*/,
                                             OdArray<OPMPropertyEntry>& properties) {
    const OdString& looks = visualizationCategory;
    properties.append(
        entry(Id_Stylization, L"Stylization", looks, Editor_Choice, stylizationNames()));
    properties.append(entry(Id_ColorScheme, L"Color scheme", looks, Editor_Choice, schemeNames()));
    properties.append(entry(Id_InsertionX, L"Insertion X", geometryCategory, Editor_Length));
    properties.append(entry(Id_InsertionY, L"Insertion Y", geometryCategory, Editor_Length));
    properties.append(entry(Id_InsertionZ, L"Insertion Z", geometryCategory, Editor_Length));
    properties.append(entry(Id_Rotation, L"Rotation", geometryCategory, Editor_Angle));
    properties.append(entry(Id_Scale, L"Scale", geometryCategory, Editor_Factor));
    properties.append(entry(Id_Name, L"Name", miscCategory, Editor_Text));
    properties.append(entry(Id_SavedPath, L"Saved Path", miscCategory, Editor_Path));
    properties.append(entry(Id_Cropped, L"Cropped", miscCategory, Editor_Truth));
    properties.append(entry(Id_Locked, L"Locked", miscCategory, Editor_Truth));
    properties.append(entry(Id_Geolocate, L"Geolocate", miscCategory, Editor_Truth));
    properties.append(entry(Id_Segmentation, L"Segmentation", miscCategory, Editor_Truth));
    properties.append(entry(Id_Unit, L"Unit", miscCategory, Editor_Text));
    properties.append(entry(Id_UnitFactor, L"Unit factor", miscCategory, Editor_Length));
    properties.append(entry(Id_TotalNrPoints, L"TotalNrPoints", miscCategory, Editor_Count));
    properties.append(entry(Id_VisibleNrPoints, L"VisibleNrPoints", miscCategory, Editor_Count));
}

bool OPMPointCloudProperties::getApplicationName(OdString& name) {
    name = L"POINTCLOUD";
    return true;
}

bool OPMPointCloudProperties::getObjectName(const OdDbEntity* /*entity*/, OdString& name) {
    return !name.isEmpty();
}

bool OPMPointCloudProperties::getCategoryName(const OdString& /*category*/, OdString& /*name*/) {
    return false;
}

bool OPMPointCloudProperties::getPropertyName(const OdDbEntity* /*entity*/, int /*id*/,
                                              const OdString& /*property*/, OdString& name) {
    return !name.isEmpty();
}

bool OPMPointCloudProperties::getPropertyDescription(const OdDbEntity* /*entity*/, int /*id*/,
                                                     const OdString& /*property*/,
                                                     OdString& /*description*/) {
    return true;
}

bool OPMPointCloudProperties::allowPropertyPreview(int /*id*/) {
    return false;
}

int OPMPointCloudProperties::getPropertyHidden(int /*id*/) {
    // Hosts expect 1 here: the default of -1 is another answer.
    return 1;
}

bool OPMPointCloudProperties::getPropertyEnabled(const OdDbEntity* /*entity*/, int /*id*/,
                                                 const OdString& /*property*/, bool& /*enabled*/) {
    return false;
}

bool OPMPointCloudProperties::getPropertyReadOnly(const OdDbEntity* /*entity*/, int /*id*/,
                                                  const OdString& /*property*/,
                                                  bool& /*readOnly*/) {
    return false;
}

bool OPMPointCloudProperties::getPredefinedStrings(const OdDbEntity* /*entity*/, int /*id*/,
                                                   const OdString& /*property*/,
                                                   OdArray<OdString>& /*strings*/) {
    return false;
}

bool OPMPointCloudProperties::getPropertyValue(const OdDbEntity* entity, int id,
                                               const OdString& /*property*/, OPMVariant& value) {
    const auto cloud = PcDbPointCloud::cast(entity);
    OPMVariant found;
    if (id == Id_Geolocate || id == Id_Segmentation) {
        // These need no entity: points are neither located on the globe nor segmented yet.
        found = OPMVariant(false);
    } else if (cloud != nullptr) {
        found = EntityValue(*cloud, id);
    }
    if (found.varType() == OPMVariant::kNull) return false;
    value = found;
    return true;
}

OPMVariant OPMPointCloudProperties::EntityValue(const PcDbPointCloud& cloud, int id) const {
    switch (id) {
        case Id_EntityKind:
            return OPMVariant(OdString(L"Point Cloud Entity"));
        case Id_Name:
            return OPMVariant(cloud.getPointCloudName());
        case Id_Stylization:
            return OPMVariant(OdInt64{placeOf(cloud.stylizationType())});
        case Id_ColorScheme:
            return OPMVariant(OdInt64{colorSchemeMap.scheme(cloud.getCurrentColorScheme())});
        case Id_InsertionX:
            return OPMVariant(cloud.location().x);
        case Id_InsertionY:
            return OPMVariant(cloud.location().y);
        case Id_InsertionZ:
            return OPMVariant(cloud.location().z);
        case Id_Rotation:
            return OPMVariant(cloud.rotation());
        case Id_Scale:
            return OPMVariant(cloud.scale());
        case Id_Cropped:
            return OPMVariant(cloud.showCropping());
        case Id_Locked:
            return OPMVariant(cloud.locked());
        default:
            return definitionValue(cloud, id);
    }
}

bool OPMPointCloudProperties::setPropertyValue(OdDbEntity* entity, int id,
                                               const OdString& /*property*/,
                                               const OPMVariant& value) {
    const auto cloud = PcDbPointCloud::cast(entity);
    const OPMVariant::Type type = settableType(id);
    if (cloud == nullptr || type == OPMVariant::kNull || value.varType() != type) return false;
    const OpenForWrite open(*cloud);
    SetEntityValue(*cloud, id, value);
    return true;
}

void OPMPointCloudProperties::SetEntityValue(PcDbPointCloud& cloud, int id,
                                             const OPMVariant& value) const {
    switch (id) {
        case Id_Name:
            return cloud.setPointCloudName(value.getString());
        case Id_Stylization:
            return cloud.setStylizationType(
                stylizations[placeOf(value.getString(), stylizationNames())]);
        case Id_ColorScheme:
            return cloud.setCurrentColorScheme(
                colorSchemeMap.guid(placeOf(value.getString(), schemeNames())));
        case Id_InsertionX:
            return setCoordinate(cloud, &OdGePoint3d::x, value.getDouble());
        case Id_InsertionY:
            return setCoordinate(cloud, &OdGePoint3d::y, value.getDouble());
        case Id_InsertionZ:
            return setCoordinate(cloud, &OdGePoint3d::z, value.getDouble());
        case Id_Rotation:
            return cloud.setRotation(value.getDouble());
        case Id_Scale:
            return cloud.setScale(value.getDouble());
        case Id_Cropped:
            return cloud.setShowCropping(value.getBool());
        case Id_Locked:
            return cloud.setLocked(value.getBool());
        default:
            return;
    }
}

bool OPMPointCloudProperties::allEntityNames(std::map<OdString, OdString>& /*names*/) {
    return false;
}
