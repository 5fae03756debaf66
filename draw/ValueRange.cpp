#include "draw/ValueRange.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace vpc::draw {

ValueRange ValueRange::WithoutStrays(std::vector<double> values) {
    std::erase_if(values, [](double value) { return !std::isfinite(value); });
    if (values.empty()) return {};
    const auto strays = static_cast<std::ptrdiff_t>(values.size() / 100);
    const auto low = values.begin() + strays;
    const auto high = values.end() - 1 - strays;
    std::nth_element(values.begin(), low, values.end());
    ValueRange range{*low, 0.0};
    std::nth_element(low, high, values.end());
    range.max = *high;
    return range;
}

}  // namespace vpc::draw
