#pragma once

#include <map>

#include "host/GiPcColorSchemeMap.h"
#include "host/VpcExport.h"
#include "platform/OdOPMClientExtension.h"
#include "platform/OdString.h"
#include "platform/PcDbPointCloud.h"

/// The properties of a point-cloud entity that the host's palette shows and lets the user change.
///
/// The host's extension manager knows the object as long as it lives. Values are the texts, numbers
/// and booleans that the host's entity and definition hold; lengths are in drawing units. When an
/// entity refuses a change, the exception of the host passes through.
class VPC_EXPORT OPMPointCloudProperties final : public OdOPMClientExtension {
public:
    OPMPointCloudProperties();
    ~OPMPointCloudProperties() override;
    OPMPointCloudProperties(const OPMPointCloudProperties&) = delete;
    OPMPointCloudProperties& operator=(const OPMPointCloudProperties&) = delete;

    /// Appends the same properties whatever the class.
    void getPropertyMap(const OdRxClass* entityClass,
                        OdArray<OPMPropertyEntry>& properties) override;
    bool getApplicationName(OdString& name) override;

    // The host gives the names; these functions assign none.

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
    /// Returns false, since the property map holds the strings.
    bool getPredefinedStrings(const OdDbEntity* entity, int id, const OdString& property,
                              OdArray<OdString>& strings) override;

    /// Returns false and leaves `value` alone for an unknown property, for an entity that is no
    /// point cloud, and for one that lacks what the property is about: a definition, loaded points
    /// or a drawing.
    bool getPropertyValue(const OdDbEntity* entity, int id, const OdString& property,
                          OPMVariant& value) override;
    /// Returns false and changes nothing for an entity that is no point cloud, for a property that
    /// is read-only, and for a value of the wrong type. Leaves the entity open for reading.
    bool setPropertyValue(OdDbEntity* entity, int id, const OdString& property,
                          const OPMVariant& value) override;
    bool allEntityNames(std::map<OdString, OdString>& names) override;

    const OdString visualizationCategory = L"3D Visualization";
    const OdString geometryCategory = L"Geometry";
    /// No property belongs to it.
    const OdString viewCategory = L"View";
    const OdString miscCategory = L"Misc";
    const GiPcColorSchemeMap colorSchemeMap;

private:
    OPMVariant EntityValue(const PcDbPointCloud& cloud, int id) const;
    void SetEntityValue(PcDbPointCloud& cloud, int id, const OPMVariant& value) const;
};
