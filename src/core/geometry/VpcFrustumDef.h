#pragma once

#include <array>
#include <vector>

#include "core/geometry/BoxCorners.h"
#include "core/geometry/VpcBoundingBoxAxisAligned.h"
#include "core/geometry/VpcLine3D.h"
#include "core/geometry/VpcPlaneDef.h"
#include "core/geometry/VpcPoint3D.h"
#include "core/geometry/VpcTransform3D.h"
#include "core/geometry/VpcVector3D.h"

/// The volume that a camera sees, or that a pick box cuts out of it. It leads from the camera
/// through the target and is a pyramid in perspective and a box in a parallel projection. The
/// normals of its six planes point inwards.
///
/// In perspective the near rectangle has no size. Its plane is undefined (NaN) and excludes
/// nothing, since the four sides already end at the camera. Likewise, when camera and target
/// coincide there is no direction to look in: every plane is undefined and excludes nothing.
class VpcFrustumDef {
public:
    enum Plane { PlaneLeft, PlaneTop, PlaneRight, PlaneBottom, PlaneNear, PlaneFar };
    enum Vertex {
        FarTopLeft,
        FarTopRight,
        FarBottomLeft,
        FarBottomRight,
        NearTopLeft,
        NearTopRight,
        NearBottomLeft,
        NearBottomRight
    };

    /// The volume of a camera that looks at `target`.
    ///
    /// \param distance  a third of how far the volume reaches from the camera
    /// \param width, height  of the field of view, in perspective at the target's distance
    /// \param transform  from the frame of the camera to that of the tested points
    /// \return always true
    bool UpdateViewGeometry(const VpcPoint3D& camera, const VpcPoint3D& target,
                            const VpcVector3D& up, double distance, double width, double height,
                            bool perspective, const VpcTransform3D& transform);
    /// The same for a pick box of `width` by `height` in the view of that camera. The volume's axis
    /// leads through `pickPoint`, in perspective from the camera, otherwise along the view
    /// direction; its rectangles stay parallel to the view's.
    bool UpdatePickGeometry(const VpcPoint3D& camera, const VpcPoint3D& target,
                            const VpcPoint3D& pickPoint, const VpcVector3D& up, double distance,
                            double width, double height, bool perspective,
                            const VpcTransform3D& transform);

    /// Gives the volume new sizes, for a perspective or for a parallel projection. Returns true.
    bool UpdatePerspective(double width, double height);
    bool UpdateOrthographic(double width, double height);
    /// Computes the vertices, the planes and the transformed camera and target. Returns true.
    bool RecomputeVerticesPlanes();

    /// Whether the point lies in the volume or on its boundary.
    bool IsInside(double x, double y, double z) const;
    bool IsInside(const VpcPoint3D& p) const { return IsInside(p.x, p.y, p.z); }
    /// False only where the whole box lies outside one plane: a box beside an edge of the volume
    /// may count as intersecting.
    bool Intersects(const VpcBoundingBoxAxisAligned& box) const {
        return Intersects(vpc::BoxCorners(box));
    }
    bool Intersects(const vpc::BoxCorners& box) const;
    /// Whether the point is no further from the centre axis than the far rectangle is wide. The
    /// axis is that of the camera as given, before the transform.
    bool IsWithinRadiusFromCenterAxis(const VpcPoint3D& p) const;

    /// The eight vertices, transformed, in the order of Vertex.
    std::vector<VpcPoint3D> GetRefVertices() const { return {vertices_.begin(), vertices_.end()}; }
    const std::array<VpcPlaneDef, 6>& GetPlanes() const { return planes_; }
    /// Camera and target, transformed.
    const VpcPoint3D& GetCamera() const { return camera_; }
    const VpcPoint3D& GetTarget() const { return target_; }

    // In the frame of the camera as given, before the transform.

    const VpcTransform3D& GetTransform() const { return transform_; }
    /// From the target to the camera, of length 1.
    const VpcVector3D& GetViewDirection() const { return viewDirection_; }
    const VpcVector3D& GetUp() const { return up_; }
    const VpcVector3D& GetRight() const { return right_; }
    const VpcLine3D& GetCentreAxis() const { return centreAxis_; }
    double GetCameraDistance() const { return cameraDistance_; }
    double GetNearDistance() const { return nearDistance_; }
    const VpcPoint3D& GetNearCenter() const { return nearCenter_; }
    double GetNearWidth() const { return nearWidth_; }
    double GetNearHeight() const { return nearHeight_; }
    double GetFarDistance() const { return farDistance_; }
    const VpcPoint3D& GetFarCenter() const { return farCenter_; }
    double GetFarWidth() const { return farWidth_; }
    double GetFarHeight() const { return farHeight_; }

private:
    void SetCamera(const VpcPoint3D& camera, const VpcPoint3D& target, const VpcVector3D& up,
                   double distance, const VpcTransform3D& transform);
    /// Centres the rectangles on the axis that starts at `start` and moves by `step` for every unit
    /// of distance from the camera.
    void SetCenters(const VpcPoint3D& start, const VpcVector3D& step);
    bool UpdateSizes(double width, double height, bool perspective);
    void SetRectangle(Vertex topLeft, const VpcPoint3D& centre, double width, double height);

    VpcTransform3D transform_;
    // Kept as given, so that computing the volume again does not transform them twice.
    VpcPoint3D givenCamera_;
    VpcPoint3D givenTarget_;
    VpcPoint3D camera_;
    VpcPoint3D target_;
    VpcVector3D viewDirection_;
    VpcVector3D up_;
    VpcVector3D right_;
    double cameraDistance_ = 0.0;
    double nearDistance_ = 0.0;
    VpcPoint3D nearCenter_;
    double nearWidth_ = 0.0;
    double nearHeight_ = 0.0;
    double farDistance_ = 0.0;
    VpcPoint3D farCenter_;
    double farWidth_ = 0.0;
    double farHeight_ = 0.0;
    std::array<VpcPlaneDef, 6> planes_;
    std::array<VpcPoint3D, 8> vertices_;
    VpcLine3D centreAxis_;
};
