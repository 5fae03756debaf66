#include "view/CameraView.h"

#include <array>
#include <cmath>

namespace vpc {
namespace {

/// The values by which a change of the view is noticed.
std::array<double, 11> comparedValues(const CameraView& view) {
    return {view.camera.x,     view.camera.y,   view.camera.z,     view.target.x,
            view.target.y,     view.target.z,   view.viewVector.x, view.viewVector.y,
            view.viewVector.z, view.fieldWidth, view.fieldHeight};
}

}  // namespace

bool CameraView::SpansSpace() const {
    for (const double value : comparedValues(*this))
        if (!std::isfinite(value)) return false;
    if (!(fieldWidth > 0 && fieldHeight > 0 && viewportWidth > 0 && viewportHeight > 0))
        return false;
    // To the camera's right. Where the camera is at the target, this has no length either.
    return viewVector.crossProduct(camera - target).length() > 0;
}

bool CameraView::DiffersFrom(const CameraView& other) const {
    constexpr double tolerance = 0.001;
    const auto before = comparedValues(*this);
    const auto now = comparedValues(other);
    for (std::size_t i = 0; i < before.size(); ++i) {
        // Negated, so that the undefined ratio to a stored 0 counts as a change.
        if (!(std::abs(1.0 - now[i] / before[i]) < tolerance)) return true;
    }
    return perspective != other.perspective;
}

}  // namespace vpc
