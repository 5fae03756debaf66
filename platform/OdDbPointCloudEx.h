#pragma once

#include "platform/OdDbEntity.h"
#include "platform/OdDbObjectId.h"
#include "platform/OdGePoint3d.h"
#include "platform/OdString.h"

/// Stand-in for the host SDK's point-cloud entity, which places a definition in the drawing. The
/// setters throw OdError where the entity is not open for writing.
class OD_EXPORT OdDbPointCloudEx : public OdDbEntity {
    ODRX_DECLARE_MEMBERS(OdDbPointCloudEx)

public:
    /// The definition, which knows the file and holds the points.
    OdDbObjectId pointCloudDefExId() const { return definition_; }
    void setPointCloudDefExId(OdDbObjectId definition);

    const OdString& getPointCloudName() const { return name_; }
    void setPointCloudName(const OdString& name);
    /// 1 scan colours, 4 elevation, 5 intensity.
    OdInt32 stylizationType() const { return stylizationType_; }
    void setStylizationType(OdInt32 type);
    /// The colour scheme's GUID; empty for scan colours.
    const OdString& getCurrentColorScheme() const { return colorScheme_; }
    void setCurrentColorScheme(const OdString& guid);

    const OdGePoint3d& location() const { return location_; }
    void setLocation(const OdGePoint3d& location);
    /// In radians, about the z axis.
    double rotation() const { return rotation_; }
    void setRotation(double rotation);
    double scale() const { return scale_; }
    void setScale(double scale);

    bool showCropping() const { return showCropping_; }
    void setShowCropping(bool show);
    bool locked() const { return locked_; }
    void setLocked(bool locked);

private:
    OdDbObjectId definition_;
    OdString name_;
    OdString colorScheme_;
    OdGePoint3d location_;
    double rotation_ = 0.0;
    double scale_ = 1.0;
    OdInt32 stylizationType_ = 1;
    bool showCropping_ = true;
    bool locked_ = false;
};
