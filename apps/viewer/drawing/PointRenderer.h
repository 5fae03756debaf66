#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>

#include <glm/vec2.hpp>
#include <glm/vec3.hpp>

#include "draw/Image.h"
#include "viewer/camera/ViewCamera.h"
#include "viewer/document/ViewStyle.h"
#include "viewer/drawing/PointVertex.h"

namespace vpc::viewer {

/// Draws points into pictures, in slices, so that the window can answer between two of them. One
/// thread until Release, but for the memory that OpenPoints gives.
class PointRenderer {
public:
    virtual ~PointRenderer() = default;

    /// What draws, for people: the graphics card's name, for example.
    virtual std::string Name() const = 0;

    /// Memory for `count` points in place of the older ones, which are gone. Another thread may
    /// write to it until ClosePoints. Empty when there is not enough memory.
    virtual std::span<PointVertex> OpenPoints(std::size_t count) = 0;
    /// Takes over the first `count` points of that memory.
    /// \param origin what they are relative to, in drawing coordinates
    /// \param spacing about how far apart neighbours are, in drawing units; for automatic sizes
    virtual void ClosePoints(std::size_t count, const glm::dvec3& origin, double spacing) = 0;
    virtual std::size_t PointCount() const = 0;

    /// How wide and how high a picture may be, in pixels. A larger one stays empty.
    virtual int LargestSide() const { return 16'384; }
    /// How much of the computer's memory drawing and saving a picture takes, for each pixel.
    virtual std::size_t BytesPerPixel() const = 0;
    /// Whether it has given up for good: from then on pictures are empty.
    virtual bool IsLost() const { return false; }
    /// Begins a picture, with nothing drawn. Throws std::bad_alloc where it takes more memory than
    /// there is.
    virtual void Begin(const ViewCamera& camera, const draw::ImageSize& size,
                       const ViewStyle& style) = 0;
    /// Draws points number `first`, `first + step` and so on. Neighbours in memory are neighbours
    /// in space, so that a step of n gives a fair n-th of the picture.
    virtual void Draw(std::size_t first, std::size_t step) = 0;
    /// The picture of what has been drawn since Begin. May be asked for between two slices.
    virtual draw::Image Picture() = 0;
    /// Where the world is seen at a pixel of the last picture, or at most a few pixels beside it;
    /// nothing over empty space.
    virtual std::optional<glm::dvec3> PlaceAt(const glm::ivec2& pixel) const = 0;

    /// Leaves the calling thread. The next call may come from another one.
    virtual void Release() {}
};

}  // namespace vpc::viewer
