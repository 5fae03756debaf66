#include "vpc/export/ExportSource.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "core/util/VpcColorTools.h"
#include "tree/file/LevelPoints.h"
#include "vpc/common/Interrupt.h"
#include "vpc/common/TreeFile.h"

namespace vpc {

namespace {

/// Few enough for a processor's cache.
constexpr std::size_t pointsAtOnce = 4096;
constexpr const char* verifyAdvice = "see vpc verify";

void colourByElevation(VpcPoint3D& p, double elevation, double low, double high) {
    double red = 0, green = 0, blue = 0;
    VpcColorTools::ApplyColorScheme(elevation, low, high, VPC_ColorScheme_Spectrum, red, green,
                                    blue);
    const auto channel = [](double value) {
        return value > 0.0 ? static_cast<std::uint16_t>(std::lround(std::min(value, 255.0)))
                           : std::uint16_t{0};
    };
    p.red = channel(red);
    p.green = channel(green);
    p.blue = channel(blue);
}

}  // namespace

void ExportSummary::Add(std::span<const VpcPoint3D> batch) {
    if (batch.empty()) return;
    if (points == 0) low = high = {batch[0].x, batch[0].y, batch[0].z};
    points += batch.size();
    for (const VpcPoint3D& p : batch) {
        low = {std::min(low[0], p.x), std::min(low[1], p.y), std::min(low[2], p.z)};
        high = {std::max(high[0], p.x), std::max(high[1], p.y), std::max(high[2], p.z)};
        largestColour = std::max({largestColour, p.red, p.green, p.blue});
        if (p.x == 0.0 && p.y == 0.0 && p.z == 0.0) ++atOrigin;
        // A float has no room for larger ones.
        floatIntensities = floatIntensities &&
                           std::abs(p.intensity) <= std::numeric_limits<float>::max() &&
                           static_cast<double>(static_cast<float>(p.intensity)) == p.intensity;
    }
}

ExportSource::ExportSource(PointTreeReader& tree, unsigned long long level, const CutOptions& cuts)
    : tree_(tree), level_(level), matrix_(cuts.Matrix()) {
    cuts.SetUp(cuts_);
    batch_.resize(pointsAtOnce);
    advising(verifyAdvice, [&] { pointsOfLevel_ = LevelPoints::Count(tree_, level_); });
    ForEach("measuring points", [&](std::span<const VpcPoint3D> batch) { summary_.Add(batch); });
}

void ExportSource::ColourByElevation() {
    Range range{std::numeric_limits<double>::max(), std::numeric_limits<double>::lowest()};
    ForEach("measuring elevations", [&](std::span<const VpcPoint3D> batch) {
        for (const VpcPoint3D& p : batch) {
            const double elevation = Elevation(p);
            range = {std::min(range.low, elevation), std::max(range.high, elevation)};
        }
    });
    elevations_ = range;
    summary_.largestColour = std::numeric_limits<std::uint8_t>::max();
}

void ExportSource::ForEach(const std::string& step, const Visit& visit) {
    progress_.Begin(step, pointsOfLevel_);
    try {
        LevelPoints::ForEach(tree_, level_, [&](std::span<const char> records) {
            Interrupt::Check();
            Take(records, visit);
            progress_.Add(records.size() / VpcPoint3D::recordSize);
        });
    } catch (const IoError& failure) {
        // What writes the points fails in its own words.
        if (failure.File() != tree_.FileName()) throw;
        throw CommandError(sentence(failure, verifyAdvice));
    }
    progress_.Clear();
}

void ExportSource::Take(std::span<const char> records, const Visit& visit) {
    const bool filters = cuts_.FiltersPoints();
    std::size_t taken = 0;
    const auto pass = [&] {
        if (taken > 0) visit({batch_.data(), taken});
        taken = 0;
    };
    for (std::size_t start = 0; start < records.size(); start += VpcPoint3D::recordSize) {
        VpcPoint3D& p = batch_[taken];
        p.FromRecord(records.data() + start);
        if (filters && !cuts_.Passes(p.x, p.y, p.z)) continue;
        if (elevations_) colourByElevation(p, Elevation(p), elevations_->low, elevations_->high);
        if (++taken == batch_.size()) pass();
    }
    pass();
}

double ExportSource::Elevation(const VpcPoint3D& p) const {
    return matrix_[2][0] * p.x + matrix_[2][1] * p.y + matrix_[2][2] * p.z + matrix_[2][3];
}

}  // namespace vpc
