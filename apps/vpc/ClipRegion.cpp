#include "ClipRegion.h"

#include <string_view>

#include "CommandError.h"
#include "NumberList.h"

namespace vpc {

namespace {

constexpr std::string_view outsidePrefix = "outside:";
constexpr const char* circleForm = "CX,CY,R or outside:CX,CY,R";
constexpr const char* polygonForm = "X,Y;X,Y;X,Y... or outside:X,Y;X,Y;X,Y...";

/// Takes the prefix off; whether it was there.
bool takeOutside(std::string& text) {
    if (text.compare(0, outsidePrefix.size(), outsidePrefix) != 0) return false;
    text.erase(0, outsidePrefix.size());
    return true;
}

std::vector<std::string> corners(const std::string& text) {
    std::vector<std::string> parts(1);
    for (const char c : text) {
        if (c == ';')
            parts.emplace_back();
        else
            parts.back() += c;
    }
    // A semicolon may end the list.
    if (parts.back().empty()) parts.pop_back();
    return parts;
}

}  // namespace

ClipRegion ClipRegion::ParseCircle(const std::string& text) {
    ClipRegion region;
    std::string numbers = text;
    region.keepInside_ = !takeOutside(numbers);
    region.circle_ = true;
    const auto n = NumberList::Require(numbers, 3, "--clip-circle", circleForm);
    if (!(n[2] > 0.0)) throw CommandUsageError("--clip-circle needs a radius above 0");
    region.vertices_ = {{n[0], n[1], 0.0}, {n[0] + n[2], n[1], 0.0}};
    return region;
}

ClipRegion ClipRegion::ParsePolygon(const std::string& text) {
    ClipRegion region;
    std::string numbers = text;
    region.keepInside_ = !takeOutside(numbers);
    for (const std::string& corner : corners(numbers)) {
        const auto n = NumberList::Require(corner, 2, "--clip-polygon", polygonForm);
        region.vertices_.emplace_back(n[0], n[1], 0.0);
    }
    if (region.vertices_.size() < 3)
        throw CommandUsageError("--clip-polygon needs three corners or more, as " +
                                std::string(polygonForm));
    return region;
}

GiPcClipConfig ClipRegion::ToConfig(const OdGeMatrix3d& matrix) const {
    // A point set is clipped in its own coordinates, so the plane goes there with its region.
    const OdGeMatrix3d toPoints = matrix.inverse();
    const auto place = [&](const VpcVector3D& v) {
        return OdGePoint3d(v.x, v.y, v.z).transformBy(toPoints);
    };
    const OdGePoint3d origin = place({0, 0, 0});
    GiPcClipConfig config;
    config.type = circle_ ? 0 : 1;
    config.flag2 = keepInside_;
    config.flag3 = false;
    config.plane = OdGePlane(origin, place({0, 0, 1}) - origin);
    for (const VpcVector3D& vertex : vertices_)
        config.vertices.append(place(vertex).convert2d(config.plane));
    return config;
}

}  // namespace vpc
