#pragma once

#include <string>

namespace vpc::viewer {

/// The sources of the shaders. They do in the graphics card what draw::DepthBuffer, draw::Surface
/// and draw::eyeDomeShading do, with the same numbers.
///
/// The first row of the framebuffer is the upper one of the picture, so that nothing has to be
/// turned over when it is read. Beside the colours it holds depths: what lies ahead of the eye in
/// perspective, of the target in parallel projection.
namespace gl_shaders {

/// What the framebuffer holds in place of a depth where nothing is drawn.
constexpr float nothing = 3e38F;

std::string pointVertex();
std::string pointFragment();
std::string shadingVertex();
std::string shadingFragment();

}  // namespace gl_shaders

}  // namespace vpc::viewer
