#include "core/geometry/NumberText.h"

#include <charconv>
#include <limits>

namespace {

/// Room for the sign, the point and every digit of the largest double before the point.
constexpr int wholePartRoom = std::numeric_limits<double>::max_exponent10 + 4;

std::string formatted(double value, std::chars_format format, int precision) {
    std::string text(static_cast<std::size_t>(wholePartRoom + precision), '\0');
    const auto end =
        std::to_chars(text.data(), text.data() + text.size(), value, format, precision).ptr;
    text.resize(static_cast<std::size_t>(end - text.data()));
    return text;
}

}  // namespace

namespace vpc {

std::string fixedText(double value, int decimals) {
    return formatted(value, std::chars_format::fixed, decimals);
}

std::string generalText(double value, int digits) {
    return formatted(value, std::chars_format::general, digits);
}

}  // namespace vpc
