#pragma once

#include <optional>
#include <string>
#include <vector>

#include "draw/ColourRamp.h"
#include "draw/Surface.h"
#include "vpc/view/LoadedPointSet.h"
#include "vpc/view/ViewOptions.h"

namespace vpc {

/// The colours that the points of a view have in a picture.
///
/// A host is given the colours of the scan unless it asks for others. In a picture, points without
/// colours of their own are coloured by intensity, or by elevation where all intensities are
/// the same. A ramp spans what is visible in the picture without strays, and not all points.
class PictureColours {
public:
    /// \param points stay where they are as long as this object lives
    /// \param range  what a ramp spans; nothing where the visible points decide
    PictureColours(const LoadedPointSet& points, const ViewOptions& options,
                   const draw::Surface& surface, const std::optional<draw::ValueRange>& range);

    draw::Colour Of(std::size_t point) const {
        return ramp_ ? ramp_->Of(Value(point)) : ScanColour(point);
    }
    /// What the colours stand for; null where they are those of the scan.
    const draw::ColourRamp* Ramp() const { return ramp_ ? &*ramp_ : nullptr; }
    /// A legend's title: what is coloured, and its unit.
    std::string Title() const;
    /// The end of the sentence "coloured by ...".
    std::string Source() const;

private:
    enum class Shown { ScanColours, Elevation, Intensity, Brightness };

    Shown Choose(const ViewOptions& options);
    Shown ChooseForGrey();
    bool AreAllGrey() const;
    bool HasColours() const;
    /// Reads the intensities; whether they differ.
    bool ReadIntensities();
    double Value(std::size_t point) const;
    draw::Colour ScanColour(std::size_t point) const;
    draw::ValueRange VisibleRange(const draw::Surface& surface) const;

    const LoadedPointSet& points_;
    const OdGePoint3d* coordinates_;
    const OdCmEntityColor* colours_;
    std::size_t count_;
    std::vector<double> intensities_;
    Shown shown_;
    std::optional<draw::ColourRamp> ramp_;
};

}  // namespace vpc
