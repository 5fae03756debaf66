#include "core/geometry/VpcVector3D.h"

#include <numbers>
#include <ostream>

#include "core/geometry/NumberText.h"
#include "core/geometry/VpcPoint3D.h"

namespace {

std::string componentText(double component) {
    return vpc::generalText(std::isfinite(component) ? component : 0.0);
}

}  // namespace

VpcVector3D::VpcVector3D(const VpcPoint3D& from, const VpcPoint3D& to) {
    setCoordinates(to.x - from.x, to.y - from.y, to.z - from.z);
}

void VpcVector3D::CreateArbitraryAxesFromNormal(VpcVector3D normal, VpcVector3D& axisX,
                                                VpcVector3D& axisY) {
    constexpr double nearVertical = 1.0 / 64;
    normal.Normalize();
    const bool alongZ = std::abs(normal.x) < nearVertical && std::abs(normal.y) < nearVertical;
    axisX = (alongZ ? VpcVector3D(0, 1, 0) : VpcVector3D(0, 0, 1)).Cross(normal);
    axisX.Normalize();
    axisY = normal.Cross(axisX);
}

double VpcVector3D::AngleTo(const VpcVector3D& v) const {
    return std::acos(Dot(v) / (Magnitude() * v.Magnitude()));
}

double VpcVector3D::DirectionalAngle(const VpcVector3D& v, const VpcVector3D& reference) const {
    const double angle = AngleTo(v);
    const double side = Cross(v).AngleTo(reference);
    return side < std::numbers::pi / 2 ? angle : -angle;
}

double VpcVector3D::AngleTo2PI(const VpcVector3D& v, const VpcVector3D& reference) const {
    const double angle = std::atan2(Dot(reference), Dot(v));
    return angle < 0 ? angle + 2 * std::numbers::pi : angle;
}

std::string VpcVector3D::ToString(bool bracketed) const {
    const std::string tx = componentText(x);
    const std::string ty = componentText(y);
    const std::string tz = componentText(z);
    if (bracketed) return " ( " + tx + ", " + ty + ", " + tz + " ) ";
    return tx + " " + ty + " " + tz;
}

std::ostream& operator<<(std::ostream& out, const VpcVector3D& v) {
    return out << v.ToString(false);
}
