#include "NumberText.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace vpc {

namespace {

std::string twoDigits(unsigned long long value) {
    return (value < 10 ? "0" : "") + std::to_string(value);
}

}  // namespace

std::string NumberText::Exact(double value) {
    std::array<char, 32> text{};
    const auto end = std::to_chars(text.data(), text.data() + text.size(), value).ptr;
    return {text.data(), end};
}

std::string NumberText::Fixed(double value, int decimals) {
    std::array<char, 352> text{};  // the largest double has 309 digits before the point
    const auto end = std::to_chars(text.data(), text.data() + text.size(), value,
                                   std::chars_format::fixed, decimals);
    return {text.data(), end.ptr};
}

std::string NumberText::Short(double value) {
    static constexpr std::array units = {"", " k", " M", " G", " T", " P", " E"};
    std::size_t unit = 0;
    for (; value >= 999.5 && unit + 1 < units.size(); ++unit) value /= 1000.0;
    const int decimals = unit == 0 || value >= 99.95 ? 0 : value >= 9.995 ? 1 : 2;
    return Fixed(value, decimals) + units[unit];
}

std::string NumberText::Bytes(unsigned long long bytes) {
    const std::string text = Short(static_cast<double>(bytes));
    return text.find(' ') == std::string::npos ? text + " bytes" : text + "B";
}

std::string NumberText::Duration(double seconds) {
    const auto whole = static_cast<unsigned long long>(std::clamp(seconds, 0.0, 1e15));
    const unsigned long long minutes = whole / 60;
    if (minutes == 0) return std::to_string(whole) + " s";
    const std::string tail = ":" + twoDigits(whole % 60);
    if (minutes < 60) return std::to_string(minutes) + tail + " min";
    return std::to_string(minutes / 60) + ":" + twoDigits(minutes % 60) + tail + " h";
}

}  // namespace vpc
