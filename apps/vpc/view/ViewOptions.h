#pragma once

#include <string>

#include "vpc/view/ShownOptions.h"

namespace vpc {

/// The options that decide, beside the camera, what a view shows: which points, and in which
/// colours.
class ViewOptions : public ShownOptions {
public:
    explicit ViewOptions(CLI::App& options);

    /// Gives a point set the density, the cuts and the colours.
    void SetUp(GiPointSetDefinition& points) const;

private:
    std::string stylizationText_ = "scan";
    std::string schemeText_ = "Spectrum";
};

}  // namespace vpc
