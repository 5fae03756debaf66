#include "SampleFlight.h"

#include <algorithm>
#include <cmath>

namespace vpc {

namespace {

constexpr double pointsPerSquareMetre = 10.0;
constexpr double stripWidth = 180.0;
/// Strips overlap, so that no gap opens between them.
constexpr double overlap = 1.1;

unsigned long long rounded(double value) {
    return static_cast<unsigned long long>(std::max(1.0, value + 0.5));
}

}  // namespace

SampleFlight::SampleFlight(unsigned long long points, std::uint64_t seed)
    : scene_(seed),
      random_(seed),
      side_(std::max(1.0, std::sqrt(static_cast<double>(points) / pointsPerSquareMetre))),
      strips_(static_cast<unsigned>(std::ceil(side_ / stripWidth))) {
    const double perStrip = static_cast<double>(points) / strips_;
    // The distance of the lines is that of the points on a line.
    linesPerStrip_ = rounded(std::sqrt(perStrip * strips_ / overlap));
    pointsPerLine_ = rounded(std::ceil(perStrip / static_cast<double>(linesPerStrip_)) - 0.5);
}

SamplePoint SampleFlight::Next() {
    const double width = side_ / strips_;
    const double step = 2.0 / static_cast<double>(pointsPerLine_);
    const double place = (static_cast<double>(onLine_) + 0.5 + 0.4 * random_.Bell()) * step - 1.0;
    across_ = line_ % 2 == 0 ? place : -place;
    const double progress =
        (static_cast<double>(line_) +
         (static_cast<double>(onLine_) + random_.Unit()) / static_cast<double>(pointsPerLine_)) /
        static_cast<double>(linesPerStrip_);
    const double along = strip_ % 2 == 0 ? progress : 1.0 - progress;
    const double middle = (strip_ + 0.5) * width;
    const SamplePoint point = scene_.Hit(originX + middle + across_ * overlap * width / 2,
                                         originY + along * side_, random_);
    NextPlace();
    return point;
}

void SampleFlight::NextPlace() {
    ++done_;
    if (++onLine_ < pointsPerLine_) return;
    onLine_ = 0;
    if (++line_ < linesPerStrip_ || strip_ + 1 == strips_) return;
    line_ = 0;
    ++strip_;
}

}  // namespace vpc
