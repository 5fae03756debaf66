#pragma once

#include <memory>
#include <string>

#include "viewer/drawing/PointRenderer.h"

namespace vpc::viewer {

enum class RendererChoice {
    /// The graphics card where there is one.
    Auto,
    Gl,
    Cpu,
};

/// Makes what draws the points; never null.
/// \param sentence for the user: why the processor draws although the choice was another one; empty
///                 where all is as chosen
std::unique_ptr<PointRenderer> makeRenderer(RendererChoice choice, std::string& sentence);

}  // namespace vpc::viewer
