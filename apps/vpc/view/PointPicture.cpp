#include "vpc/view/PointPicture.h"

#include <vector>

#include "core/util/DisplayText.h"
#include "core/util/DrawingUnits.h"
#include "draw/DepthBuffer.h"
#include "draw/EyeDomeShading.h"
#include "draw/Legend.h"
#include "draw/OverlayStyle.h"
#include "draw/Paint.h"
#include "draw/ScaleBar.h"
#include "draw/Surface.h"
#include "vpc/common/Command.h"
#include "vpc/common/SystemMemory.h"
#include "vpc/view/PictureColours.h"

namespace vpc {

namespace {

/// What drawing takes at its peak.
constexpr unsigned long long bytesPerPixel = 56;

draw::Point3 toPoint(const VpcVector3D& v) {
    return {v.x, v.y, v.z};
}

draw::Camera cameraOf(const ViewCamera& camera) {
    const CameraAxes axes(camera);
    return {toPoint(camera.eye),
            toPoint(axes.Right()),
            toPoint(axes.Up()),
            toPoint(axes.Forward()),
            (camera.target - camera.eye).Magnitude(),
            camera.fieldWidth,
            camera.fieldHeight,
            camera.perspective};
}

draw::Surface surfaceOf(const LoadedPointSet& points, const draw::Projection& projection,
                        const PictureOptions& options) {
    static_assert(sizeof(OdGePoint3d) == 3 * sizeof(double));
    draw::DepthBuffer buffer(projection.Size());
    const unsigned long long count = points->getNrVisiblePoints();
    if (count > 0) buffer.Add(projection, &points->getPointCoordinates()->x, count, 0);
    return {buffer, projection, {options.PointSize()}};
}

}  // namespace

void PointPicture::RequireMemory(const Viewport& size) {
    const auto bytes = bytesPerPixel * static_cast<unsigned long long>(size.width) *
                       static_cast<unsigned long long>(size.height);
    if (bytes > systemMemory())
        throw CommandError("a picture of " + std::to_string(size.width) + " x " +
                           std::to_string(size.height) + " pixels takes " +
                           DisplayText::Bytes(bytes) +
                           " of memory, more than there is; give a smaller --size");
}

PointPicture PointPicture::Draw(const LoadedPointSet& points, const ViewCamera& camera,
                                const Viewport& size, const ViewOptions& view,
                                const PictureOptions& options) {
    const draw::Projection projection(cameraOf(camera), {size.width, size.height});
    const draw::Surface surface = surfaceOf(points, projection, options);
    const PictureColours colours(points, view, surface, options.Range());
    draw::Image image(projection.Size(), options.Background());
    std::vector<float> brightness;
    if (options.Shaded()) brightness = draw::eyeDomeShading(surface, projection);
    draw::paint(image, surface, brightness,
                [&colours](std::size_t point) { return colours.Of(point); });
    if (options.WithLegend()) {
        const draw::OverlayStyle style(projection.Size(), options.Background());
        if (colours.Ramp() != nullptr)
            draw::drawLegend(image, *colours.Ramp(), colours.Title(), style);
        draw::drawScaleBar(image, projection, DrawingUnits::Symbol(points->getPointModelUnit()),
                           style);
    }
    return {std::move(image), colours.Source()};
}

}  // namespace vpc
