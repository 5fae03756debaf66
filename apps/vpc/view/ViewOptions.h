#pragma once

#include <optional>
#include <string>

#include "vpc/view/ShownOptions.h"

namespace vpc {

/// The options that decide, beside the camera, what a view shows: which points, and in which
/// colours.
class ViewOptions : public ShownOptions {
public:
    explicit ViewOptions(CLI::App& options);

    /// What the colours show; nothing in particular unless it is given.
    GiPcStylizationType Stylization() const;
    /// The colour ramp, where one is given.
    std::optional<GiPcColorScheme> Scheme() const;
    /// Gives a point set the density, the cuts and the colours.
    void SetUp(GiPointSetDefinition& points) const;

private:
    std::string stylizationText_ = "auto";
    std::string schemeText_;
};

}  // namespace vpc
