#include "vpc/export/LasAxisSearch.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <utility>

namespace vpc {

namespace {

/// The finest scale is 10 to the power of minus this.
constexpr int finest = -15;
/// Offsets are multiples of powers of ten from this one on.
constexpr int largestOffsetPower = 7;
/// Multiples of one power of ten that are tried at each end of the axis and in its middle: many
/// where one of them may be exact, and few where none is.
constexpr int manyMultiples = 64;
constexpr int fewMultiples = 2;
/// More candidates would take more time than they are worth.
constexpr std::size_t mostOfOneScale = 2;
constexpr std::size_t mostExact = 6;
constexpr std::size_t mostInexact = 4;
/// Errors that differ by less than this factor count as alike.
constexpr double alike = 2.0;

/// A power of ten comes first. A few scans have scales such as 0.0025, which are better than
/// coordinates that are not exact.
constexpr std::array factors = {1.0, 5.0, 2.5, 2.0};

double powerOfTen(int exponent) {
    double power = 1.0;
    for (int i = 0; i < exponent; ++i) power *= 10.0;
    return power;
}

/// The double that a text such as 0.0025 means: whole powers are exact, and so a quotient of them
/// is rounded once.
double scaleOf(double factor, int exponent) {
    return exponent < 0 ? factor / powerOfTen(-exponent) : factor * powerOfTen(exponent);
}

}  // namespace

LasAxisSearch::LasAxisSearch(std::vector<double> sample) : sample_(std::move(sample)) {
    const auto [low, high] = std::minmax_element(sample_.begin(), sample_.end());
    low_ = *low;
    high_ = *high;
    // With a coarser scale than 1 only where the coordinates span more than the integers do.
    coarsest_ = 0;
    while (high_ - low_ > powerOfTen(coarsest_) * LasAxis::largest) ++coarsest_;
    for (const double factor : factors)
        if (candidates_.empty()) FindExact(factor);
    if (candidates_.empty()) FindNearest();
}

std::vector<double> LasAxisSearch::OffsetsFor(double scale, int around) const {
    std::vector<double> offsets;
    const auto add = [&](double offset) {
        const LasAxis axis{scale, offset};
        if (axis.Reaches(low_) && axis.Reaches(high_)) offsets.push_back(offset);
    };
    const double middle = low_ + (high_ - low_) / 2.0;
    add(0.0);
    for (int power = largestOffsetPower; power >= 0 && power >= coarsest_; --power) {
        const double step = powerOfTen(power);
        for (const double place : {low_, middle, high_}) {
            // The nearest first: below, above, and so on.
            for (int i = 0; i < around; ++i) {
                const int away = i % 2 == 0 ? i / 2 : -(i + 1) / 2;
                add((std::floor(place / step) + away) * step);
            }
        }
    }
    for (const double place : {low_, middle, high_}) add(place);
    return offsets;
}

/// The largest error over the sample; where it is above `enough`, any value above that.
double LasAxisSearch::SampleError(const LasAxis& axis, double enough) const {
    double error = 0.0;
    for (const double coordinate : sample_) {
        error = std::max(error, axis.Error(coordinate));
        if (error > enough) break;
    }
    return error;
}

void LasAxisSearch::FindExact(double factor) {
    for (int power = coarsest_; power >= finest && candidates_.size() < mostExact; --power) {
        const double scale = scaleOf(factor, power);
        std::size_t found = 0;
        for (const double offset : OffsetsFor(scale, manyMultiples)) {
            if (SampleError({scale, offset}, 0.0) > 0.0) continue;
            candidates_.push_back({{scale, offset}});
            if (++found == mostOfOneScale) break;
        }
    }
}

void LasAxisSearch::FindNearest() {
    exact_ = false;
    for (int power = coarsest_; power >= finest; --power) {
        const double scale = scaleOf(1.0, power);
        Candidate nearest{{}, std::numeric_limits<double>::infinity()};
        for (const double offset : OffsetsFor(scale, fewMultiples)) {
            const LasAxis axis{scale, offset};
            const double error = SampleError(axis, nearest.error);
            if (error < nearest.error) nearest = {axis, error};
        }
        if (std::isfinite(nearest.error)) candidates_.push_back(nearest);
    }
    std::stable_sort(candidates_.begin(), candidates_.end(),
                     [](const Candidate& a, const Candidate& b) { return a.error < b.error; });
    if (candidates_.empty()) candidates_.push_back({});  // coordinates beyond all numbers
    if (candidates_.size() > mostInexact) candidates_.resize(mostInexact);
    for (Candidate& candidate : candidates_) candidate.error = 0.0;
}

void LasAxisSearch::Measure(std::span<const double> coordinates) {
    for (auto& [axis, largest] : candidates_) {
        if (exact_ && largest > 0.0) continue;
        double error = 0.0;
        for (const double coordinate : coordinates) {
            const double here = axis.Error(coordinate);
            error = error < here ? here : error;
        }
        largest = std::max(largest, error);
    }
}

void LasAxisSearch::EndPass() {
    std::erase_if(candidates_, [&](const Candidate& c) { return exact_ && c.error > 0.0; });
    if (candidates_.empty()) return FindNearest();
    done_ = true;
    best_ = candidates_.front();  // the coarsest, with the most usual offset
    if (exact_) return;
    double least = std::numeric_limits<double>::infinity();
    for (const Candidate& candidate : candidates_) least = std::min(least, candidate.error);
    std::stable_sort(
        candidates_.begin(), candidates_.end(),
        [](const Candidate& a, const Candidate& b) { return a.axis.scale > b.axis.scale; });
    best_ = *std::find_if(candidates_.begin(), candidates_.end(),
                          [&](const Candidate& c) { return c.error <= alike * least; });
}

}  // namespace vpc
