#pragma once

#include <map>

#include "host/GiPcColorSchemeMap.h"
#include "host/VpcExport.h"
#include "platform/OdOPMClientExtension.h"
#include "platform/OdString.h"
#include "platform/PcDbPointCloud.h"

/// What the host's property palette shows of a point-cloud entity and lets the user change.
///
/// Known to the host's extension manager from its making to its end. Values are strings, numbers
/// and truths as the host's entity and definition hold them: lengths in drawing units. What the
/// host throws when an entity refuses a change passes through.
class VPC_EXPORT OPMPointCloudProperties final : public OdOPMClientExtension {
public:
    OPMPointCloudProperties();
    ~OPMPointCloudProperties() override;
    OPMPointCloudProperties(const OPMPointCloudProperties&) = delete;
    OPMPointCloudProperties& operator=(const OPMPointCloudProperties&) = delete;

    /// The same properties, whatever the class.
    void getPropertyMap(const OdRxClass* entityClass,
                        OdArray<OPMPropertyEntry>& properties) override;
    bool getApplicationName(OdString& name) override;

    // Names are the host's to give: none is assigned, and there is one if the host has one.

    bool getObjectName(const OdDbEntity* entity, OdString& name) override;
    bool getCategoryName(const OdString& category, OdString& name) override;
    bool getPropertyName(const OdDbEntity* entity, int id, const OdString& property,
                         OdString& name) override;
    bool getPropertyDescription(const OdDbEntity* entity, int id, const OdString& property,
                                OdString& description) override;

    bool allowPropertyPreview(int id) override;
    int getPropertyHidden(int id) override;
    bool getPropertyEnabled(const OdDbEntity* entity, int id, const OdString& property,
                            bool& enabled) override;
    bool getPropertyReadOnly(const OdDbEntity* entity, int id, const OdString& property,
                             bool& readOnly) override;
    /// False: they are in the property map.
    bool getPredefinedStrings(const OdDbEntity* entity, int id, const OdString& property,
                              OdArray<OdString>& strings) override;

    /// False, and `value` as it was, for an unknown property, for an entity that is no point cloud,
    /// and where the entity lacks what the property is about: a definition, loaded points, a
    /// drawing.
    bool getPropertyValue(const OdDbEntity* entity, int id, const OdString& property,
                          OPMVariant& value) override;
    /// False, with nothing changed, for an entity that is no point cloud, a property that cannot be
    /// set, and a value of the wrong type. The entity is left open for reading.
    bool setPropertyValue(OdDbEntity* entity, int id, const OdString& property,
                          const OPMVariant& value) override;
    bool allEntityNames(std::map<OdString, OdString>& names) override;

    const OdString visualizationCategory = L"3D Visualization";
    const OdString geometryCategory = L"Geometry";
    /// No property is in it.
    const OdString viewCategory = L"View";
    const OdString miscCategory = L"Misc";
    const GiPcColorSchemeMap colorSchemeMap;

private:
    OPMVariant EntityValue(const PcDbPointCloud& cloud, int id) const;
    void SetEntityValue(PcDbPointCloud& cloud, int id, const OPMVariant& value) const;
};
