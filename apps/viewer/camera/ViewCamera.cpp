#include "viewer/camera/ViewCamera.h"

#include <glm/geometric.hpp>

#include "viewer/camera/DrawPoint.h"

namespace vpc::viewer {

glm::dvec3 ViewCamera::Ahead() const {
    return glm::normalize(target - eye);
}

glm::dvec3 ViewCamera::Right() const {
    return glm::normalize(glm::cross(Ahead(), up));
}

double ViewCamera::Distance() const {
    return glm::length(target - eye);
}

double ViewCamera::FieldWidth(const draw::ImageSize& size) const {
    return fieldHeight * size.width / size.height;
}

draw::Projection ViewCamera::ProjectionTo(const draw::ImageSize& size) const {
    return {{toPoint(eye), toPoint(Right()), toPoint(up), toPoint(Ahead()), Distance(),
             FieldWidth(size), fieldHeight, perspective},
            size};
}

}  // namespace vpc::viewer
