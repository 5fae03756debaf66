#pragma once

#include <optional>

#include <glm/vec2.hpp>
#include <glm/vec3.hpp>

#include "viewer/camera/Box.h"
#include "viewer/camera/ViewCamera.h"

namespace vpc::viewer {

/// What the view turns around and zooms to.
class Pivot {
public:
    /// The place under the cursor; over empty space the place on the cursor's line that is as far
    /// away as the last pivot, or else as the middle of what the line meets of the box, or else as
    /// the box's centre or the target. Becomes the last pivot. Always ahead of the eye in
    /// perspective.
    /// \param seen what is seen under the cursor
    glm::dvec3 Find(const ViewCamera& camera, const draw::ImageSize& size, const glm::ivec2& cursor,
                    const std::optional<glm::dvec3>& seen, const Box& box);
    const std::optional<glm::dvec3>& Last() const { return last_; }
    /// Forgets the last pivot: another drawing has come.
    void Forget() { last_.reset(); }

private:
    std::optional<glm::dvec3> last_;
};

}  // namespace vpc::viewer
