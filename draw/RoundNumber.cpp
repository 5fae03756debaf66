#include "draw/RoundNumber.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace vpc::draw {

namespace {

/// Beyond these powers of ten, numbers are written with an exponent.
constexpr int leastPlainExponent = -6;
constexpr int mostPlainExponent = 9;
/// Quotients of round numbers may miss the round result by this much.
constexpr double slack = 1e-9;

int exponentOf(double number) {
    return static_cast<int>(std::floor(std::log10(number) + slack));
}

}  // namespace

std::string shortText(double number) {
    std::array<char, 32> text;
    const auto end = std::to_chars(text.data(), text.data() + text.size(), number,
                                   std::chars_format::general, 6);
    return {text.data(), end.ptr};
}

RoundNumber::RoundNumber(int digit, int exponent)
    : value_(digit * std::pow(10.0, exponent)), exponent_(exponent) {
}

RoundNumber RoundNumber::NotAbove(double limit) {
    const int exponent = exponentOf(limit);
    const double digits = limit / std::pow(10.0, exponent) * (1.0 + slack);
    return {digits >= 5.0 ? 5 : digits >= 2.0 ? 2 : 1, exponent};
}

RoundNumber RoundNumber::NotBelow(double limit) {
    const int exponent = exponentOf(limit);
    const double digits = limit / std::pow(10.0, exponent) * (1.0 - slack);
    if (digits > 5.0) return {1, exponent + 1};
    return {digits > 2.0 ? 5 : digits > 1.0 ? 2 : 1, exponent};
}

std::string RoundNumber::Text(double multiple) const {
    // Adding 0 makes a 0 of a negative zero.
    const double value = std::round(multiple / value_) * value_ + 0.0;
    const bool plain = exponent_ >= leastPlainExponent && exponent_ <= mostPlainExponent &&
                       std::abs(value) < std::pow(10.0, mostPlainExponent + 2);
    if (!plain) return shortText(value);
    std::array<char, 64> text;
    const auto end = std::to_chars(text.data(), text.data() + text.size(), value,
                                   std::chars_format::fixed, std::max(0, -exponent_));
    return {text.data(), end.ptr};
}

}  // namespace vpc::draw
