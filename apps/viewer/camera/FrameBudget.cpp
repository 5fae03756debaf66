#include "viewer/camera/FrameBudget.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace vpc::viewer {

namespace {

constexpr double memory = 0.85;  // what a measurement counts after the next one
constexpr double outlier = 3.0;  // times what was expected
constexpr double leastMsPerPoint = 1e-8;
constexpr double mostMsPerPoint = 1.0;
constexpr double mostFixedMs = 1000.0;
constexpr double fewestPoints = 1000.0;
constexpr double mostPoints = 1e12;

}  // namespace

void FrameBudget::Measured(std::size_t points, double milliseconds) {
    if (points == 0 || !std::isfinite(milliseconds) || milliseconds <= 0.0) return;
    // A single wild figure is an accident; the second one in a row is another speed.
    const double expected = MillisecondsFor(points);
    const int wild = milliseconds > expected * outlier   ? 1
                     : milliseconds < expected / outlier ? -1
                                                         : 0;
    const int before = std::exchange(wild_, wild);
    if (wild != 0 && weight_ > 0.0) {
        if (wild != before) return;
        for (double* sum : {&weight_, &sumX_, &sumY_, &sumXX_, &sumXY_}) *sum *= 0.01;
    }
    const double x = static_cast<double>(points);
    weight_ = memory * weight_ + 1.0;
    sumX_ = memory * sumX_ + x;
    sumY_ = memory * sumY_ + milliseconds;
    sumXX_ = memory * sumXX_ + x * x;
    sumXY_ = memory * sumXY_ + x * milliseconds;

    const double meanX = sumX_ / weight_;
    const double meanY = sumY_ / weight_;
    const double variance = sumXX_ / weight_ - meanX * meanX;
    const double covariance = sumXY_ / weight_ - meanX * meanY;
    // Numbers of points that hardly differ tell nothing of the fixed part, which then stays.
    double slope = (meanY - std::min(fixedMs_, 0.5 * meanY)) / meanX;
    if (variance > 0.01 * meanX * meanX && covariance > 0.0) slope = covariance / variance;
    msPerPoint_ = std::clamp(slope, leastMsPerPoint, mostMsPerPoint);
    fixedMs_ = std::clamp(meanY - msPerPoint_ * meanX, 0.0, mostFixedMs);
    // A fixed part that came out below 0 is none; then the points took all of the time.
    if (fixedMs_ == 0.0) msPerPoint_ = std::clamp(meanY / meanX, leastMsPerPoint, mostMsPerPoint);
}

double FrameBudget::MillisecondsFor(std::size_t points) const {
    return fixedMs_ + msPerPoint_ * static_cast<double>(points);
}

std::size_t FrameBudget::PointsIn(double milliseconds) const {
    // A third of the time is for points at least: many thin slices would mostly wait.
    const double left = std::max(0.5 * fixedMs_, milliseconds - fixedMs_);
    const double points = left / msPerPoint_;
    // A number that is none is not above anything.
    return static_cast<std::size_t>(points > fewestPoints ? std::min(points, mostPoints)
                                                          : fewestPoints);
}

std::size_t FrameBudget::Step(std::size_t points, double milliseconds) const {
    const std::size_t fitting = PointsIn(milliseconds);
    return std::max<std::size_t>(1, points / fitting + (points % fitting != 0 ? 1 : 0));
}

}  // namespace vpc::viewer
