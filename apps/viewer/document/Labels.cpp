#include "viewer/document/Labels.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace vpc::viewer {

namespace {

constexpr int usualDecimals = 3;
constexpr int mostDecimals = 12;

/// Decimals that show so many digits of a number below 1.
int decimalsFor(double number, int digits) {
    if (!(number > 0.0) || number >= 1.0) return usualDecimals;
    const double decimals = digits - 1 - std::floor(std::log10(number));
    return static_cast<int>(std::clamp<double>(decimals, usualDecimals, mostDecimals));
}

}  // namespace

std::string decimalText(double number, int decimals) {
    if (!std::isfinite(number) || std::abs(number) >= 1e15) return exactText(number);
    std::array<char, 40> buffer;  // sign, 15 digits, point, decimals
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number,
                                   std::chars_format::fixed, std::clamp(decimals, 0, mostDecimals))
                         .ptr;
    std::string text(buffer.data(), end);
    if (text.find('.') != std::string::npos) {
        text.erase(text.find_last_not_of('0') + 1);
        if (text.back() == '.') text.pop_back();
    }
    return text == "-0" ? "0" : text;
}

std::string exactText(double number) {
    std::array<char, 40> buffer;
    const double size = std::abs(number);
    const bool isPlain = size == 0.0 || (size >= 1e-6 && size < 1e15);
    const auto format = isPlain ? std::chars_format::fixed : std::chars_format::scientific;
    const auto end =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), number, format).ptr;
    return {buffer.data(), end};
}

std::string coordinateText(double coordinate, double extent) {
    return decimalText(coordinate, decimalsFor(extent, 4));
}

std::string placeText(const glm::dvec3& place, double extent) {
    return coordinateText(place.x, extent) + ", " + coordinateText(place.y, extent) + ", " +
           coordinateText(place.z, extent);
}

std::string lengthText(double length) {
    return decimalText(length, decimalsFor(std::abs(length), 4));
}

}  // namespace vpc::viewer
