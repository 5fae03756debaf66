#include "vpc/common/CutOptions.h"

#include <cmath>
#include <string_view>

#include <CLI/CLI.hpp>

#include "core/geometry/VpcTransform3D.h"
#include "tree/disk/VpcTree.h"
#include "vpc/common/Command.h"
#include "vpc/common/NumberList.h"

namespace vpc {

SectionPlane SectionPlane::Parse(const std::string& text) {
    const auto n = NumberList::Require(text, 6, "--section", "PX,PY,PZ,NX,NY,NZ");
    if (n[3] == 0.0 && n[4] == 0.0 && n[5] == 0.0)
        throw CommandUsageError("--section needs a normal, and 0,0,0 is none");
    return {{n[0], n[1], n[2]}, {n[3], n[4], n[5]}};
}

namespace {

constexpr std::string_view outsidePrefix = "outside:";
constexpr const char* circleForm = "CX,CY,R or outside:CX,CY,R";
constexpr const char* polygonForm = "X,Y;X,Y;X,Y... or outside:X,Y;X,Y;X,Y...";

/// Removes the prefix; returns whether it was there.
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

namespace {

constexpr int matrixNumbers = 16;

/// Large enough for matrices that are written with six decimals.
constexpr double tolerance = 1e-5;

bool isNear(double a, double b) {
    return std::abs(a - b) <= tolerance;
}

/// Whether the rows of the upper left part are at right angles and of length 1, and the bottom row
/// is that of an affine matrix.
bool isRigid(const OdGeMatrix3d& m) {
    for (int i = 0; i < 3; ++i) {
        if (!isNear(m[3][i], 0.0)) return false;
        for (int j = 0; j <= i; ++j) {
            const double dot = m[i][0] * m[j][0] + m[i][1] * m[j][1] + m[i][2] * m[j][2];
            if (!isNear(dot, i == j ? 1.0 : 0.0)) return false;
        }
    }
    return isNear(m[3][3], 1.0);
}

/// The matrix of 16 numbers, row by row; the identity when there are none. Throws CommandUsageError
/// unless it is a rotation and a translation.
OdGeMatrix3d parseMatrix(const std::vector<std::string>& texts) {
    OdGeMatrix3d matrix;
    std::vector<double> values;
    values.reserve(texts.size());
    for (const std::string& text : texts)
        values.push_back(
            NumberList::Require(text, 1, "--matrix", "16 numbers, row by row").front());
    for (int i = 0; i < static_cast<int>(values.size()); ++i)
        matrix[i / 4][i % 4] = values[static_cast<std::size_t>(i)];
    if (!isRigid(matrix))
        throw CommandUsageError(
            "--matrix takes a rotation and a translation: rows at right angles and of length 1, "
            "the translation in the last column, and 0,0,0,1 as the last row");
    return matrix;
}

}  // namespace

CutOptions::CutOptions(CLI::App& options) {
    const std::string group = "Cuts";
    options
        .add_option("--section", sectionTexts_,
                    "Keep what is on the side of a plane, given by a point of it, that its normal "
                    "points to; may be repeated")
        ->allow_extra_args(false)
        ->type_name("PX,PY,PZ,NX,NY,NZ")
        ->group(group);
    options
        .add_option("--clip-circle", circleTexts_,
                    "Keep what is within a circle in the world's XY plane, or with outside: in "
                    "front, what is not; may be repeated")
        ->allow_extra_args(false)
        ->type_name("[outside:]CX,CY,R")
        ->group(group);
    options.add_option("--clip-polygon", polygonTexts_, "The same for a polygon; may be repeated")
        ->allow_extra_args(false)
        ->type_name("[outside:]X,Y;X,Y;...")
        ->group(group);
    options
        .add_option("--matrix", matrixTexts_,
                    "Rotation and translation from the file's coordinates to the world's: 16 "
                    "numbers by rows, with commas or blanks between")
        ->expected(matrixNumbers)
        ->delimiter(',')
        ->type_name("M11,M12,...")
        ->group(group);
}

void CutOptions::Read() {
    for (const std::string& text : sectionTexts_) sections_.push_back(SectionPlane::Parse(text));
    for (const std::string& text : circleTexts_) clips_.push_back(ClipRegion::ParseCircle(text));
    for (const std::string& text : polygonTexts_) clips_.push_back(ClipRegion::ParsePolygon(text));
    matrix_ = parseMatrix(matrixTexts_);
}

void CutOptions::SetUp(GiPointSetDefinition& points) const {
    for (const SectionPlane& plane : sections_)
        points.addSection(OdString("section"), plane.point, plane.normal, true);
    for (const ClipRegion& region : clips_) points.addClipping(region.ToConfig(matrix_));
}

void CutOptions::SetUp(VpcTree& tree) const {
    VpcTree::SectionPlanes planes;
    for (const auto& [point, normal] : sections_)
        planes.emplace_back(OdString("section"), VpcPlaneDef({point.x, point.y, point.z},
                                                             {normal.x, normal.y, normal.z}));
    tree.SetSectionPlanes(planes, VpcTransform3D(matrix_.inverse()));
    std::vector<GiPcClipConfig> regions;
    for (const ClipRegion& region : clips_) regions.push_back(region.ToConfig(matrix_));
    tree.SetLocalClippings(regions);
}

}  // namespace vpc
