#include "core/geometry/VpcSimplePointTools.h"

#include <algorithm>
#include <cmath>

#include "core/geometry/PointTuple.h"

namespace {

using PointOrder = bool (*)(const vpc::PointTuple&, const vpc::PointTuple&);

void sortAndList(std::vector<vpc::PointTuple>& tuples, PointOrder order,
                 VpcSimplePointTools::IndexList& indices) {
    std::sort(tuples.begin(), tuples.end(), order);
    indices.reserve(tuples.size());
    for (const vpc::PointTuple& tuple : tuples) indices.push_back(tuple.indices[0]);
}

void widen(double value, double& min, double& max) {
    min = std::min(min, value);
    max = std::max(max, value);
}

template <class Test>
bool anyCoordinate(const VpcPoint3D& p, const Test& test) {
    return test(p.x) || test(p.y) || test(p.z);
}

constexpr double conversionPrecision = 1e-9;

}  // namespace

void VpcSimplePointTools::DeterminePointsMinMaxPoints(const PointList& list, VpcPoint3D& min,
                                                      VpcPoint3D& max) {
    const VpcPoint3D first = list.empty() ? VpcPoint3D() : list.front();
    min.SetCoordinates(first.x, first.y, first.z);
    max.SetCoordinates(first.x, first.y, first.z);
    for (const VpcPoint3D& p : list) {
        widen(p.x, min.x, max.x);
        widen(p.y, min.y, max.y);
        widen(p.z, min.z, max.z);
    }
}

bool VpcSimplePointTools::DetermineMinPointsDistance(const PointList& list, double& d) {
    d = 1e26;
    for (auto a = list.begin(); a != list.end(); ++a)
        for (auto b = a + 1; b != list.end(); ++b) d = std::min(d, a->DistanceTo(*b));
    return true;
}

void VpcSimplePointTools::GetColorRanges(const PointList& list, double& intensityMin,
                                         double& intensityMax, double& redMin, double& redMax,
                                         double& greenMin, double& greenMax, double& blueMin,
                                         double& blueMax) {
    intensityMin = redMin = greenMin = blueMin = 100000.0;
    intensityMax = redMax = greenMax = blueMax = -100000.0;
    for (const VpcPoint3D& p : list) {
        widen(p.intensity, intensityMin, intensityMax);
        widen(p.red, redMin, redMax);
        widen(p.green, greenMin, greenMax);
        widen(p.blue, blueMin, blueMax);
    }
}

void VpcSimplePointTools::SortIndices(const PointList& list, IndexList& byX, IndexList& byY,
                                      IndexList& byZ) {
    byX.clear();
    byY.clear();
    byZ.clear();
    std::vector<vpc::PointTuple> tuples;
    tuples.reserve(list.size());
    for (const VpcPoint3D& p : list) {
        const unsigned long long index = tuples.size();
        tuples.push_back({p, {index, index, index}});
    }
    sortAndList(tuples, myPointTupleSortX, byX);
    sortAndList(tuples, myPointTupleSortY, byY);
    sortAndList(tuples, myPointTupleSortZ, byZ);
}

bool VpcSimplePointTools::GetInvalidPointCounts(const PointList& list,
                                                unsigned long long& zeroCount,
                                                unsigned long long& infiniteCount,
                                                unsigned long long& nanCount,
                                                unsigned long long& regularCount) {
    zeroCount = infiniteCount = nanCount = regularCount = 0;
    for (const VpcPoint3D& p : list) {
        if (anyCoordinate(p, [](double c) { return std::isnan(c); }))
            ++nanCount;
        else if (anyCoordinate(p, [](double c) { return std::isinf(c); }))
            ++infiniteCount;
        else if (!anyCoordinate(p, [](double c) { return c != 0.0; }))
            ++zeroCount;
        else
            ++regularCount;
    }
    return true;
}

VpcCoordinate3D VpcSimplePointTools::CartesianToSpherical(const VpcCoordinate3D& c) {
    const double r = std::sqrt(c.x * c.x + c.y * c.y + c.z * c.z);
    return {r, std::atan2(c.y, c.x), std::acos(c.z / r), conversionPrecision};
}

VpcCoordinate3D VpcSimplePointTools::SphericalToCartesian(const VpcCoordinate3D& c) {
    const double r = c.x;
    const double azimuth = c.y;
    const double polar = c.z;
    return {r * std::cos(azimuth) * std::sin(polar), r * std::sin(azimuth) * std::sin(polar),
            r * std::cos(polar), conversionPrecision};
}

VpcCoordinate3D VpcSimplePointTools::CartesianToCylindrical(const VpcCoordinate3D& c) {
    return {std::sqrt(c.x * c.x + c.y * c.y), std::atan2(c.y, c.x), c.z, conversionPrecision};
}

VpcCoordinate3D VpcSimplePointTools::CylindricalToCartesian(const VpcCoordinate3D& c) {
    return {c.x * std::cos(c.y), c.x * std::sin(c.y), c.z, conversionPrecision};
}

VpcVector3D VpcSimplePointTools::CartesianToSpherical(const VpcVector3D& v) {
    return VpcVector3D(CartesianToSpherical(v.ToVpcCoordinate3D()));
}

VpcPoint3D VpcSimplePointTools::CartesianToSpherical(const VpcPoint3D& p) {
    return VpcPoint3D(CartesianToSpherical(p.ToVpcCoordinate3D()));
}

VpcVector3D VpcSimplePointTools::SphericalToCartesian(const VpcVector3D& v) {
    return VpcVector3D(SphericalToCartesian(v.ToVpcCoordinate3D()));
}

VpcPoint3D VpcSimplePointTools::SphericalToCartesian(const VpcPoint3D& p) {
    return VpcPoint3D(SphericalToCartesian(p.ToVpcCoordinate3D()));
}

VpcVector3D VpcSimplePointTools::CartesianToCylindrical(const VpcVector3D& v) {
    return VpcVector3D(CartesianToCylindrical(v.ToVpcCoordinate3D()));
}

VpcPoint3D VpcSimplePointTools::CartesianToCylindrical(const VpcPoint3D& p) {
    return VpcPoint3D(CartesianToCylindrical(p.ToVpcCoordinate3D()));
}

VpcVector3D VpcSimplePointTools::CylindricalToCartesian(const VpcVector3D& v) {
    return VpcVector3D(CylindricalToCartesian(v.ToVpcCoordinate3D()));
}

VpcPoint3D VpcSimplePointTools::CylindricalToCartesian(const VpcPoint3D& p) {
    return VpcPoint3D(CylindricalToCartesian(p.ToVpcCoordinate3D()));
}

bool myPointTupleSortX(const vpc::PointTuple& a, const vpc::PointTuple& b) {
    return a.point.x < b.point.x;
}

bool myPointTupleSortY(const vpc::PointTuple& a, const vpc::PointTuple& b) {
    return a.point.y < b.point.y;
}

bool myPointTupleSortZ(const vpc::PointTuple& a, const vpc::PointTuple& b) {
    return a.point.z < b.point.z;
}
