#include "viewer/drawing/CpuRenderer.h"

#include <sys/mman.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <new>

#include "draw/DepthBuffer.h"
#include "draw/EyeDomeShading.h"
#include "draw/Paint.h"
#include "draw/Surface.h"
#include "viewer/camera/Box.h"
#include "viewer/camera/DrawPoint.h"
#include "viewer/drawing/NearestCovered.h"
#include "viewer/drawing/Sizing.h"

namespace vpc::viewer {

namespace {

/// No drawing is as large.
constexpr float beyondAll = 1e30F;

draw::Colour colourOf(std::uint32_t bits) {
    return {static_cast<std::uint8_t>(bits >> 16U), static_cast<std::uint8_t>(bits >> 8U),
            static_cast<std::uint8_t>(bits)};
}

/// Slices jump through the points, so fewer and larger pages are found faster. Where the system has
/// none, all works as well.
void askForLargePages(void* memory, std::size_t bytes) {
#ifdef MADV_HUGEPAGE
    constexpr std::size_t page = 1U << 21U;
    if (std::align(page, page, memory, bytes) != nullptr)
        madvise(memory, bytes / page * page, MADV_HUGEPAGE);
#else
    static_cast<void>(memory);
    static_cast<void>(bytes);
#endif
}

/// In parallel projection it has no meaning where on the line of sight the eye is. This is the
/// camera with the eye just before the box, so that nothing lies behind it and depths are small.
ViewCamera slidBefore(ViewCamera camera, const Box& box) {
    if (camera.perspective || box.IsEmpty()) return camera;
    const glm::dvec3 ahead = camera.Ahead();
    double nearest = std::numeric_limits<double>::infinity();
    for (const glm::dvec3& corner : box.Corners())
        nearest = std::min(nearest, glm::dot(corner - camera.eye, ahead));
    const double gap = 0.01 * box.Diagonal() + camera.fieldHeight;
    camera.eye += ahead * (nearest - gap);
    camera.target = camera.eye + ahead * gap;
    return camera;
}

}  // namespace

/// The points, in memory that nobody touches before it is filled.
class CpuRenderer::Points {
public:
    std::span<PointVertex> Open(std::size_t count) {
        points_ = {};
        box_.reset();
        // Memory that fits is kept, since the system takes a while to give new one.
        if (count > capacity_ || count < capacity_ - capacity_ / 5) Allocate(count);
        if (capacity_ == 0) return {};
        return {reinterpret_cast<PointVertex*>(memory_.get()), count};
    }
    void Close(std::size_t count, const glm::dvec3& origin, double spacing) {
        points_ = {reinterpret_cast<const PointVertex*>(memory_.get()), std::min(count, capacity_)};
        origin_ = origin;
        spacing_ = spacing;
    }

    std::size_t Count() const { return points_.size(); }
    double Spacing() const { return spacing_; }
    /// Their colours stand for their numbers, so that a picture is made without another look at
    /// them.
    draw::FloatPoints Floats() const {
        if (points_.empty()) return {};
        return {&points_[0].x, &points_[0].colour, sizeof(PointVertex), Count(), toPoint(origin_)};
    }
    /// In drawing coordinates.
    const Box& BoxAround() {
        if (!box_) box_ = FindBox();
        return *box_;
    }

private:
    void Allocate(std::size_t count) {
        memory_.reset();
        capacity_ = 0;
        // The depth buffer has no numbers for more points.
        if (count >= draw::DepthBuffer::noPoint) return;
        try {
            memory_ = std::make_unique_for_overwrite<std::byte[]>(count * sizeof(PointVertex));
            capacity_ = count;
            askForLargePages(memory_.get(), count * sizeof(PointVertex));
        } catch (const std::bad_alloc&) {
        }
    }
    Box FindBox() const {
        glm::vec3 min(std::numeric_limits<float>::max());
        glm::vec3 max(-std::numeric_limits<float>::max());
        for (const PointVertex& point : points_) {
            // What is no number, or beyond all, is not drawn either.
            const float size = std::abs(point.x) + std::abs(point.y) + std::abs(point.z);
            if (!(size < beyondAll)) continue;
            const glm::vec3 place(point.x, point.y, point.z);
            min = glm::min(min, place);
            max = glm::max(max, place);
        }
        Box box;
        if (min.x > max.x) return box;
        box.Add(origin_ + glm::dvec3(min));
        box.Add(origin_ + glm::dvec3(max));
        return box;
    }

    /// Bytes, since vertices would be set to 0 at once.
    std::unique_ptr<std::byte[]> memory_;
    std::size_t capacity_ = 0;
    std::span<const PointVertex> points_;
    glm::dvec3 origin_{0.0, 0.0, 0.0};
    double spacing_ = 0.0;
    std::optional<Box> box_;
};

/// A picture that is being drawn.
class CpuRenderer::Frame {
public:
    explicit Frame(const draw::ImageSize& size) : depths_(size) {}

    void Begin(const draw::Projection& projection, const ViewStyle& style) {
        depths_.Clear();
        projection_ = projection;
        style_ = style;
        drawn_ = 0;
    }
    void Draw(const draw::FloatPoints& points, std::size_t first, std::size_t step) {
        if (first >= points.count || step == 0) return;
        depths_.Add(projection_, points, first, step);
        drawn_ += (points.count - first - 1) / step + 1;
    }
    draw::Image Paint(const Points& points) {
        surface_.Draw(depths_, projection_, Size(points));
        surfaceProjection_ = projection_;
        draw::Image image(projection_.Size(), style_.background);
        std::vector<float> brightness;
        if (style_.shaded) brightness = draw::eyeDomeShading(surface_, projection_);
        draw::paint(image, surface_, brightness, colourOf);
        return image;
    }
    const draw::ImageSize& Size() const { return projection_.Size(); }
    std::optional<glm::dvec3> PlaceAt(const glm::ivec2& pixel) const {
        const draw::ImageSize& size = surface_.Size();
        const auto found = nearestCovered(pixel, size, [&](const glm::ivec2& at) {
            return surface_.IsCovered(size.Pixel(at.x, at.y));
        });
        if (!found) return std::nullopt;
        const double depth = static_cast<double>(surface_.Depth(size.Pixel(found->x, found->y)));
        const draw::Point3 place = surfaceProjection_.At({found->x + 0.5, found->y + 0.5, depth});
        return glm::dvec3(place.x, place.y, place.z);
    }

private:
    draw::PointSize Size(const Points& points) const {
        const double all = static_cast<double>(std::max<std::size_t>(points.Count(), 1));
        const double share = static_cast<double>(std::max<std::size_t>(drawn_, 1)) / all;
        draw::PointSize size = pointSizeOf(style_, points.Spacing(), std::min(share, 1.0));
        const bool finished = drawn_ >= points.Count();
        if (finished && style_.sizing == PointSizing::Automatic) size.diameter.reset();
        return size;
    }

    draw::DepthBuffer depths_;
    draw::Projection projection_{{}, {}};
    ViewStyle style_;
    std::size_t drawn_ = 0;
    /// Of the last picture. What was begun after it may look from elsewhere.
    draw::Surface surface_;
    draw::Projection surfaceProjection_{{}, {}};
};

CpuRenderer::CpuRenderer() : points_(std::make_unique<Points>()) {
}

CpuRenderer::~CpuRenderer() = default;

std::string CpuRenderer::Name() const {
    return "Processor";
}

std::span<PointVertex> CpuRenderer::OpenPoints(std::size_t count) {
    return points_->Open(count);
}

void CpuRenderer::ClosePoints(std::size_t count, const glm::dvec3& origin, double spacing) {
    points_->Close(count, origin, spacing);
}

std::size_t CpuRenderer::PointCount() const {
    return points_->Count();
}

std::size_t CpuRenderer::BytesPerPixel() const {
    // The depth buffer, the surface, its brightness and the picture.
    return 36;
}

void CpuRenderer::Begin(const ViewCamera& camera, const draw::ImageSize& size,
                        const ViewStyle& style) {
    if (frame_ == nullptr || frame_->Size() != size) {
        frame_.reset();
        frame_ = std::make_unique<Frame>(size);
    }
    const Box box = camera.perspective ? Box{} : points_->BoxAround();
    frame_->Begin(slidBefore(camera, box).ProjectionTo(size), style);
}

void CpuRenderer::Draw(std::size_t first, std::size_t step) {
    if (frame_ != nullptr) frame_->Draw(points_->Floats(), first, step);
}

draw::Image CpuRenderer::Picture() {
    if (frame_ == nullptr) return {draw::ImageSize{}, draw::Colour{}};
    return frame_->Paint(*points_);
}

std::optional<glm::dvec3> CpuRenderer::PlaceAt(const glm::ivec2& pixel) const {
    if (frame_ == nullptr) return std::nullopt;
    return frame_->PlaceAt(pixel);
}

}  // namespace vpc::viewer
