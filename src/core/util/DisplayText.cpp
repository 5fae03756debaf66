#include "core/util/DisplayText.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "core/geometry/NumberText.h"

namespace vpc {

namespace {

/// Appends a colon and a number of two digits.
void appendTwoDigits(std::string& text, unsigned long long value) {
    text += value < 10 ? ":0" : ":";
    text += std::to_string(value);
}

}  // namespace

std::string DisplayText::Exact(double value) {
    std::array<char, 32> text{};
    const auto end = std::to_chars(text.data(), text.data() + text.size(), value).ptr;
    return {text.data(), end};
}

std::string DisplayText::Short(double value) {
    static constexpr std::array units = {"", " k", " M", " G", " T", " P", " E"};
    std::size_t unit = 0;
    for (; value >= 999.5 && unit + 1 < units.size(); ++unit) value /= 1000.0;
    const int decimals = unit == 0 || value >= 99.95 ? 0 : value >= 9.995 ? 1 : 2;
    return fixedText(value, decimals) + units[unit];
}

std::string DisplayText::Bytes(unsigned long long bytes) {
    const std::string text = Short(static_cast<double>(bytes));
    return text.find(' ') == std::string::npos ? text + " bytes" : text + "B";
}

std::string DisplayText::Duration(double seconds) {
    const auto whole = static_cast<unsigned long long>(std::clamp(seconds, 0.0, 1e15));
    const unsigned long long minutes = whole / 60;
    if (minutes == 0) return std::to_string(whole) + " s";
    std::string text = std::to_string(minutes < 60 ? minutes : minutes / 60);
    if (minutes >= 60) appendTwoDigits(text, minutes % 60);
    appendTwoDigits(text, whole % 60);
    return text + (minutes < 60 ? " min" : " h");
}

}  // namespace vpc
