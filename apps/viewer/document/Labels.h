#pragma once

#include <string>

#include <glm/vec3.hpp>

namespace vpc::viewer {

/// A number with a point and as many decimals at most; zeros at the end are left out.
std::string decimalText(double number, int decimals);
/// Every digit that the number needs to be read back as the same double, with a point.
std::string exactText(double number);
/// A coordinate, with three decimals; with more where everything is smaller than 1, so that three
/// or four digits tell places apart.
/// \param extent how large what is looked at is, in the same unit
std::string coordinateText(double coordinate, double extent);
/// "x, y, z"
std::string placeText(const glm::dvec3& place, double extent);
/// A length with three decimals, or four digits where it is below 1.
std::string lengthText(double length);

}  // namespace vpc::viewer
