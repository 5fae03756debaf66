#pragma once

namespace vpc::viewer {

/// How many points can be asked for.
struct BudgetRange {
    static constexpr unsigned long long least = 1'000;
    static constexpr unsigned long long most = 200'000'000;
    /// What the slider reaches; more needs an option.
    static constexpr unsigned long long onSlider = 50'000'000;
};

}  // namespace vpc::viewer
