#pragma once

#include <array>
#include <cstddef>

#include "draw/Colour.h"
#include "draw/ValueRange.h"

namespace vpc::draw {

/// Turns values into colours: a table of colours over a range.
class ColourRamp {
public:
    static constexpr std::size_t steps = 256;
    using Table = std::array<Colour, steps>;

    ColourRamp(const Table& table, const ValueRange& range)
        : table_(table),
          range_(range),
          stepsPerUnit_(range.max > range.min ? static_cast<double>(steps) / (range.max - range.min)
                                              : 0.0) {}

    const ValueRange& Range() const { return range_; }
    /// Values beyond the range have the colours of its ends. In an empty range, and for a NaN, it
    /// is the colour in the middle.
    Colour Of(double value) const {
        const double step = (value - range_.min) * stepsPerUnit_;
        if (stepsPerUnit_ == 0.0 || !(step == step)) return table_[steps / 2];
        return table_[static_cast<std::size_t>(
            std::clamp(step, 0.0, static_cast<double>(steps - 1)))];
    }

private:
    Table table_;
    ValueRange range_;
    double stepsPerUnit_;
};

}  // namespace vpc::draw
