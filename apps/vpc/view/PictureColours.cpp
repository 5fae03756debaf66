#include "vpc/view/PictureColours.h"

#include <algorithm>
#include <cstdint>

#include "core/util/DrawingUnits.h"
#include "core/util/VpcColorTools.h"

namespace vpc {

namespace {

/// So many values tell the percentiles of any number of them well enough.
constexpr std::size_t sampleSize = 200'000;

std::uint8_t channelByte(double value) {
    return static_cast<std::uint8_t>(std::clamp(value, 0.0, 255.0));
}

draw::ColourRamp::Table tableOf(VpcColorScheme scheme) {
    draw::ColourRamp::Table table;
    const auto last = static_cast<double>(table.size() - 1);
    for (std::size_t step = 0; step < table.size(); ++step) {
        double red = 0.0, green = 0.0, blue = 0.0;
        VpcColorTools::ApplyColorScheme(static_cast<double>(step), 0.0, last, scheme, red, green,
                                        blue);
        table[step] = {channelByte(red), channelByte(green), channelByte(blue)};
    }
    return table;
}

template <class Values>
bool differ(const Values& first, std::size_t count) {
    for (std::size_t i = 1; i < count; ++i)
        if (first(i) != first(0)) return true;
    return false;
}

}  // namespace

PictureColours::PictureColours(const LoadedPointSet& points, const ViewOptions& options,
                               const draw::Surface& surface,
                               const std::optional<draw::ValueRange>& range)
    : points_(points),
      coordinates_(points->getPointCoordinates()),
      colours_(points->getPointColors()),
      count_(static_cast<std::size_t>(points->getNrVisiblePoints())),
      shown_(Choose(options)) {
    if (shown_ == Shown::ScanColours) return;
    const VpcColorScheme usual =
        shown_ == Shown::Elevation ? VPC_ColorScheme_Spectrum : VPC_ColorScheme_Gray;
    const auto scheme =
        static_cast<VpcColorScheme>(options.Scheme().value_or(static_cast<GiPcColorScheme>(usual)));
    ramp_.emplace(tableOf(scheme), range ? *range : VisibleRange(surface));
}

PictureColours::Shown PictureColours::Choose(const ViewOptions& options) {
    // This scheme is no ramp: it leaves the points their own colours.
    if (count_ == 0 || options.Scheme() == GiPc_ColorScheme_ScanColors) return Shown::ScanColours;
    switch (options.Stylization()) {
        case GiPc_Stylization_SCANCOLORS:
            return Shown::ScanColours;
        case GiPc_Stylization_ELEVATION:
            return Shown::Elevation;
        case GiPc_Stylization_INTENSITY:
            return ReadIntensities() ? Shown::Intensity : Shown::Brightness;
        case GiPc_Stylization_NONE:
            break;
    }
    return AreAllGrey() ? ChooseForGrey() : Shown::ScanColours;
}

PictureColours::Shown PictureColours::ChooseForGrey() {
    if (ReadIntensities()) return Shown::Intensity;
    return HasColours() ? Shown::ScanColours : Shown::Elevation;
}

/// A scan without colours is of one colour, or its reader makes a grey of the intensity.
bool PictureColours::AreAllGrey() const {
    return std::all_of(colours_, colours_ + count_,
                       [](const OdCmEntityColor& colour) {
                           return colour.red() == colour.green() && colour.green() == colour.blue();
                       }) ||
           !HasColours();
}

bool PictureColours::HasColours() const {
    return differ([this](std::size_t i) { return colours_[i].color(); }, count_);
}

bool PictureColours::ReadIntensities() {
    intensities_ = points_.Intensities();
    return differ([this](std::size_t i) { return intensities_[i]; }, count_);
}

double PictureColours::Value(std::size_t point) const {
    if (shown_ == Shown::Elevation) return coordinates_[point].z;
    if (shown_ == Shown::Intensity) return intensities_[point];
    return points_.Luminances()[point];
}

draw::Colour PictureColours::ScanColour(std::size_t point) const {
    const OdCmEntityColor& colour = colours_[point];
    return {colour.red(), colour.green(), colour.blue()};
}

draw::ValueRange PictureColours::VisibleRange(const draw::Surface& surface) const {
    const std::size_t pixels = surface.Size().Pixels();
    const std::size_t step = pixels / sampleSize + 1;
    std::vector<double> values;
    for (std::size_t pixel = 0; pixel < pixels; pixel += step)
        if (surface.IsCovered(pixel)) values.push_back(Value(surface.PointIndex(pixel)));
    return draw::ValueRange::WithoutStrays(std::move(values));
}

std::string PictureColours::Title() const {
    if (shown_ == Shown::Intensity) return "Intensity";
    if (shown_ == Shown::Brightness) return "Brightness";
    const std::string unit = DrawingUnits::Symbol(points_->getPointModelUnit());
    return unit.empty() ? "Elevation" : "Elevation (" + unit + ")";
}

std::string PictureColours::Source() const {
    switch (shown_) {
        case Shown::ScanColours:
            return "the scan";
        case Shown::Elevation:
            return "elevation";
        case Shown::Intensity:
            return "intensity";
        case Shown::Brightness:
            break;
    }
    return "brightness";
}

}  // namespace vpc
