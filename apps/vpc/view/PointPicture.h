#pragma once

#include <string>

#include "draw/Image.h"
#include "vpc/view/Camera.h"
#include "vpc/view/LoadedPointSet.h"
#include "vpc/view/PictureOptions.h"
#include "vpc/view/ViewOptions.h"

namespace vpc {

/// A picture of the last view of a point set, and what it shows.
struct PointPicture {
    /// Throws CommandError where drawing a picture of this size takes more memory than there is.
    static void RequireMemory(const Viewport& size);
    /// Shows all of the camera's field, and more beside it where the picture has another shape.
    static PointPicture Draw(const LoadedPointSet& points, const ViewCamera& camera,
                             const Viewport& size, const ViewOptions& view,
                             const PictureOptions& options);

    draw::Image image;
    /// The end of the sentence "coloured by ...".
    std::string colouredBy;
};

}  // namespace vpc
