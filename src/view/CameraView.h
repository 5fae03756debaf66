#pragma once

#include "platform/OdGePoint3d.h"
#include "platform/OdGeVector3d.h"

namespace vpc {

/// What the host tells of a camera, as it tells it; all zero before the first view.
struct CameraView {
    OdGePoint3d camera;
    OdGePoint3d target;
    /// The camera's up vector.
    OdGeVector3d viewVector;
    /// Size of the field of view in world units, in perspective at the target's distance.
    double fieldWidth = 0.0;
    double fieldHeight = 0.0;
    /// In pixels.
    int viewportWidth = 0;
    int viewportHeight = 0;
    bool perspective = false;

    /// Whether the view shows a part of space at all: it has a finite, positive size, and a
    /// direction that its up vector does not lie along.
    bool SpansSpace() const;
    /// Whether `other` shows another picture: a value differs by a thousandth or more of what it
    /// is here, or the projection does. The viewports do not count.
    bool DiffersFrom(const CameraView& other) const;
};

}  // namespace vpc
