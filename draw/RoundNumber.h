#pragma once

#include <string>

namespace vpc::draw {

/// A number with six significant digits at most.
std::string shortText(double number);

/// A number that people like to read on scales: 1, 2 or 5 times a power of ten.
class RoundNumber {
public:
    /// The largest one that is not above `limit`, a positive number.
    static RoundNumber NotAbove(double limit);
    /// The smallest one that is not below `limit`, a positive number.
    static RoundNumber NotBelow(double limit);

    double Value() const { return value_; }
    /// A multiple of this number as text, with the decimals that it needs.
    std::string Text(double multiple) const;

private:
    RoundNumber(int digit, int exponent);

    double value_;
    int exponent_;
};

}  // namespace vpc::draw
