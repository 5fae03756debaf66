#pragma once

#include "platform/OdGePoint3d.h"
#include "platform/OdGeVector3d.h"

namespace vpc {

/// A camera in the host's own terms; all values are zero before the first view.
struct CameraView {
    OdGePoint3d camera;
    OdGePoint3d target;
    /// The camera's up vector.
    OdGeVector3d viewVector;
    /// Size of the field of view in world units; in perspective, at the target's distance.
    double fieldWidth = 0.0;
    double fieldHeight = 0.0;
    /// In pixels.
    int viewportWidth = 0;
    int viewportHeight = 0;
    bool perspective = false;

    /// Whether the view shows any part of space: its size is finite and positive, and its up vector
    /// does not lie along its direction.
    bool SpansSpace() const;
    /// Whether `other` shows another picture: a value differs from this one's by a thousandth of it
    /// or more, or the projection differs. The viewports do not count.
    bool DiffersFrom(const CameraView& other) const;
};

}  // namespace vpc
