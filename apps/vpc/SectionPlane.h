#pragma once

#include <string>

#include "platform/OdGePoint3d.h"
#include "platform/OdGeVector3d.h"

namespace vpc {

/// A plane that cuts the cloud: what lies on the side of its normal stays. In world coordinates.
struct SectionPlane {
    OdGePoint3d point;
    OdGeVector3d normal;

    /// \param text "PX,PY,PZ,NX,NY,NZ". Throws CommandUsageError for anything else.
    static SectionPlane Parse(const std::string& text);
};

}  // namespace vpc
