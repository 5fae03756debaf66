#include "vpc/common/PlacedBox.h"

#include <algorithm>

#include "core/geometry/NumberText.h"

namespace vpc {

namespace {

/// Millimetres of a northing of millions.
constexpr int digits = 10;

std::string text(const VpcVector3D& p) {
    return generalText(p.x, digits) + "," + generalText(p.y, digits) + "," +
           generalText(p.z, digits);
}

}  // namespace

PlacedBox::PlacedBox(const OdGePoint3d& low, const OdGePoint3d& high, const OdGeMatrix3d& matrix) {
    for (std::size_t i = 0; i < corners.size(); ++i) {
        OdGePoint3d corner((i & 1) != 0 ? high.x : low.x, (i & 2) != 0 ? high.y : low.y,
                           (i & 4) != 0 ? high.z : low.z);
        corner.transformBy(matrix);
        corners[i].SetCoordinates(corner.x, corner.y, corner.z);
    }
}

std::string PlacedBox::Text() const {
    VpcVector3D low = corners[0];
    VpcVector3D high = corners[0];
    for (const VpcVector3D& p : corners) {
        low = {std::min(low.x, p.x), std::min(low.y, p.y), std::min(low.z, p.z)};
        high = {std::max(high.x, p.x), std::max(high.y, p.y), std::max(high.z, p.z)};
    }
    return text(low) + " to " + text(high);
}

}  // namespace vpc
