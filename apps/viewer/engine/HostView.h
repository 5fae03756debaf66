#pragma once

#include "draw/ImageSize.h"
#include "platform/OdGeMatrix3d.h"
#include "platform/OdGePoint3d.h"
#include "platform/OdGeVector3d.h"
#include "viewer/camera/Box.h"
#include "viewer/camera/ViewCamera.h"
#include "viewer/document/Placement.h"

namespace vpc::viewer {

/// Whether all of it is finite, and the scale above 0.
bool isSound(const Placement& placement);

/// A view of one entity in the numbers that a point set takes.
///
/// Point sets know rigid matrices only, so everything of the drawing is divided by the entity's
/// scale. They also show nothing farther away than three times the distance between the camera, in
/// the drawing, and the cloud's centre, in the points' own frame. A camera inside a cloud would
/// hardly see it. So the point set gets a drawing whose origin lies elsewhere along x, so far away
/// that the cloud's last corner is near enough; the view and its lines of sight stay what they are.
class HostView {
public:
    /// \param box around the points, in their own frame
    HostView(const ViewCamera& camera, const draw::ImageSize& size, const Placement& placement,
             const Box& box);

    /// Whether it is one: a point set must not be asked for another.
    bool IsSound() const { return isSound_; }
    /// Whether a point set shows the same for both.
    bool operator==(const HostView& other) const;

    /// Whether the middle of a box in the points' frame lies in the picture.
    bool SeesCentreOf(const Box& box) const;

    OdGePoint3d ToHost(const glm::dvec3& place) const;
    glm::dvec3 ToDrawing(const OdGePoint3d& point) const;
    double Scale() const { return placement_.scale; }

    const OdGeMatrix3d& Matrix() const { return matrix_; }
    const OdGePoint3d& Camera() const { return eye_; }
    const OdGePoint3d& Target() const { return target_; }
    const OdGeVector3d& Up() const { return up_; }
    double FieldWidth() const { return camera_.FieldWidth(size_) / placement_.scale; }
    double FieldHeight() const { return camera_.fieldHeight / placement_.scale; }
    const draw::ImageSize& Size() const { return size_; }
    bool IsPerspective() const { return camera_.perspective; }

private:
    void PlaceEye(const Box& box);

    ViewCamera camera_;
    draw::ImageSize size_;
    Placement placement_;
    bool isSound_;
    /// Where the drawing's origin lies on the x axis of the point set's drawing.
    double shift_ = 0.0;
    OdGePoint3d eye_;
    OdGePoint3d target_;
    OdGeVector3d up_;
    OdGeMatrix3d matrix_;
};

}  // namespace vpc::viewer
