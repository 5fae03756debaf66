#include "platform/OdDbPointCloudEx.h"

ODRX_DEFINE_MEMBERS(OdDbPointCloudEx, OdDbEntity)

void OdDbPointCloudEx::setPointCloudDefExId(OdDbObjectId definition) {
    assertWriteEnabled();
    definition_ = definition;
}

void OdDbPointCloudEx::setPointCloudName(const OdString& name) {
    assertWriteEnabled();
    name_ = name;
}

void OdDbPointCloudEx::setStylizationType(OdInt32 type) {
    assertWriteEnabled();
    stylizationType_ = type;
}

void OdDbPointCloudEx::setCurrentColorScheme(const OdString& guid) {
    assertWriteEnabled();
    colorScheme_ = guid;
}

void OdDbPointCloudEx::setLocation(const OdGePoint3d& location) {
    assertWriteEnabled();
    location_ = location;
}

void OdDbPointCloudEx::setRotation(double rotation) {
    assertWriteEnabled();
    rotation_ = rotation;
}

void OdDbPointCloudEx::setScale(double scale) {
    assertWriteEnabled();
    scale_ = scale;
}

void OdDbPointCloudEx::setShowCropping(bool show) {
    assertWriteEnabled();
    showCropping_ = show;
}

void OdDbPointCloudEx::setLocked(bool locked) {
    assertWriteEnabled();
    locked_ = locked;
}
