#pragma once

#include <optional>
#include <string>

#include "draw/Colour.h"
#include "draw/ValueRange.h"
#include "vpc/view/Camera.h"

namespace CLI {
class App;
}

namespace vpc {

/// The options that say where a picture goes and how it looks.
class PictureOptions {
public:
    explicit PictureOptions(CLI::App& options);

    /// Reads what was given. Throws CommandUsageError where that describes no picture.
    void Read();
    /// Whether there is to be a picture.
    bool Wanted() const { return !file_.empty(); }
    const std::string& File() const { return file_; }
    /// Nothing where the viewport's is to be taken.
    const std::optional<Viewport>& Size() const { return size_; }
    /// In pixels; nothing where a point's is to close the surface.
    const std::optional<double>& PointSize() const { return pointSize_; }
    bool Shaded() const { return shaded_; }
    /// What the ramp spans; nothing where the visible points decide.
    const std::optional<draw::ValueRange>& Range() const { return range_; }
    bool WithLegend() const { return !noLegend_; }
    const draw::Colour& Background() const { return background_; }

private:
    std::string file_;
    std::string sizeText_;
    std::string pointSizeText_;
    std::string shadingText_;
    std::string rangeText_;
    std::string backgroundText_;
    std::optional<Viewport> size_;
    std::optional<double> pointSize_;
    bool shaded_ = true;
    std::optional<draw::ValueRange> range_;
    bool noLegend_ = false;
    draw::Colour background_;
};

}  // namespace vpc
