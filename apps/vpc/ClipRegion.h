#pragma once

#include <string>
#include <vector>

#include "core/geometry/VpcVector3D.h"
#include "platform/GiPcClipConfig.h"
#include "platform/OdGeMatrix3d.h"

namespace vpc {

/// A circle or polygon in the world's XY plane; points above, below and within it are kept, or
/// those outside.
class ClipRegion {
public:
    /// \param text "CX,CY,R", or "outside:CX,CY,R". Throws CommandUsageError for anything else.
    static ClipRegion ParseCircle(const std::string& text);
    /// \param text "X,Y;X,Y;...", or the same after "outside:". Throws CommandUsageError for
    /// anything else, and for fewer than three corners.
    static ClipRegion ParsePolygon(const std::string& text);

    /// The region as the host describes it to a point set that it shows through `matrix`.
    GiPcClipConfig ToConfig(const OdGeMatrix3d& matrix) const;

private:
    bool keepInside_ = true;
    bool circle_ = false;
    /// The corners, or the centre and a point of the circle.
    std::vector<VpcVector3D> vertices_;
};

}  // namespace vpc
