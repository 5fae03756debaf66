#include "viewer/drawing/GlRenderer.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <new>
#include <vector>

#include <glm/geometric.hpp>
#include <glm/vec4.hpp>

#include "viewer/drawing/GlContext.h"
#include "viewer/drawing/GlObjects.h"
#include "viewer/drawing/GlShaders.h"
#include "viewer/drawing/NearestCovered.h"
#include "viewer/drawing/Sizing.h"

namespace vpc::viewer {

namespace {

/// In perspective depths are multiplied by this number: a power of two, so that no bit of them is
/// lost, and so small that the farthest ones are below 1.
constexpr float perspectiveDepthScale = 0x1p-64F;
/// In parallel projection depths are told apart best up to this many pixels' sides before and
/// behind the target: there to a thousandth of one.
constexpr double parallelDepthPixels = 4096.0;
/// What every card can leave out between two values that it reads.
constexpr std::size_t largestStride = 2048;

/// The pictures that the points, and after them the shading, are drawn into.
class Frame {
public:
    explicit Frame(const draw::ImageSize& size) : size_(size) {
        Allocate(colours_, GL_RGBA8, GL_RGBA, GL_UNSIGNED_BYTE);
        Allocate(depths_, GL_R32F, GL_RED, GL_FLOAT);
        Allocate(order_, GL_DEPTH_COMPONENT32F, GL_DEPTH_COMPONENT, GL_FLOAT);
        Allocate(shaded_, GL_RGBA8, GL_RGBA, GL_UNSIGNED_BYTE);
        glBindFramebuffer(GL_FRAMEBUFFER, points_.Name());
        Attach(GL_COLOR_ATTACHMENT0, colours_);
        Attach(GL_COLOR_ATTACHMENT1, depths_);
        Attach(GL_DEPTH_ATTACHMENT, order_);
        constexpr std::array<GLenum, 2> both = {GL_COLOR_ATTACHMENT0, GL_COLOR_ATTACHMENT1};
        glDrawBuffers(2, both.data());
        isComplete_ = IsComplete();
        glBindFramebuffer(GL_FRAMEBUFFER, shading_.Name());
        Attach(GL_COLOR_ATTACHMENT0, shaded_);
        isComplete_ = IsComplete() && isComplete_ && !takeGlErrors();
    }

    const draw::ImageSize& Size() const { return size_; }
    /// False where the card has no memory for it.
    bool CanBeUsed() const { return isComplete_; }
    void BindPoints() const { glBindFramebuffer(GL_FRAMEBUFFER, points_.Name()); }
    void BindShading() const {
        glBindFramebuffer(GL_FRAMEBUFFER, shading_.Name());
        glActiveTexture(GL_TEXTURE1);
        glBindTexture(GL_TEXTURE_2D, depths_.Name());
        glActiveTexture(GL_TEXTURE0);
        glBindTexture(GL_TEXTURE_2D, colours_.Name());
    }
    void Clear(const draw::Colour& background) const {
        BindPoints();
        const auto share = [](std::uint8_t channel) {
            return static_cast<float>(channel) / 255.0F;
        };
        const std::array<float, 4> colour = {share(background.red), share(background.green),
                                             share(background.blue), 1.0F};
        const std::array<float, 4> nothing = {gl_shaders::nothing, 0.0F, 0.0F, 0.0F};
        const float farthest = 1.0F;
        glClearBufferfv(GL_COLOR, 0, colour.data());
        glClearBufferfv(GL_COLOR, 1, nothing.data());
        glClearBufferfv(GL_DEPTH, 0, &farthest);
    }

private:
    void Allocate(const GlTexture& texture, GLint kind, GLenum format, GLenum type) const {
        glBindTexture(GL_TEXTURE_2D, texture.Name());
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
        glTexImage2D(GL_TEXTURE_2D, 0, kind, size_.width, size_.height, 0, format, type, nullptr);
    }
    static void Attach(GLenum place, const GlTexture& texture) {
        glFramebufferTexture2D(GL_FRAMEBUFFER, place, GL_TEXTURE_2D, texture.Name(), 0);
    }
    static bool IsComplete() {
        return glCheckFramebufferStatus(GL_FRAMEBUFFER) == GL_FRAMEBUFFER_COMPLETE;
    }

    draw::ImageSize size_;
    GlTexture colours_, depths_, order_, shaded_;
    GlFramebuffer points_, shading_;
    bool isComplete_ = false;
};

/// The points in the card's memory.
class PointBuffer {
public:
    std::span<PointVertex> Open(std::size_t count) {
        Unmap();
        count_ = 0;
        if (count == 0 || count > largestCount) return {};
        const auto bytes = static_cast<GLsizeiptr>(count * sizeof(PointVertex));
        glBindBuffer(GL_ARRAY_BUFFER, buffer_.Name());
        takeGlErrors();
        // Memory that fits is kept, since the card takes a while to give new one.
        if (count > capacity_ || count < capacity_ - capacity_ / 5) {
            glBufferData(GL_ARRAY_BUFFER, bytes, nullptr, GL_STATIC_DRAW);
            capacity_ = takeGlErrors() ? 0 : count;
        }
        if (capacity_ == 0) return {};
        void* const memory = glMapBufferRange(GL_ARRAY_BUFFER, 0, bytes,
                                              GL_MAP_WRITE_BIT | GL_MAP_INVALIDATE_BUFFER_BIT);
        takeGlErrors();
        if (memory == nullptr) return {};
        mapped_ = count;
        return {static_cast<PointVertex*>(memory), count};
    }
    void Close(std::size_t count, const glm::dvec3& origin, double spacing) {
        const std::size_t written = std::min(count, mapped_);
        count_ = Unmap() ? written : 0;
        origin_ = origin;
        spacing_ = spacing;
    }

    std::size_t Count() const { return count_; }
    const glm::dvec3& Origin() const { return origin_; }
    double Spacing() const { return spacing_; }

    void Draw(std::size_t first, std::size_t step) const {
        if (first >= count_ || step == 0) return;
        glBindVertexArray(array_.Name());
        glBindBuffer(GL_ARRAY_BUFFER, buffer_.Name());
        if (step * sizeof(PointVertex) <= largestStride) {
            PointAt(first, step);
            glDrawArrays(GL_POINTS, 0, static_cast<GLsizei>((count_ - first - 1) / step + 1));
            return;
        }
        PointAt(0, 1);
        std::vector<GLint> firsts;
        for (; first < count_; first += step) firsts.push_back(static_cast<GLint>(first));
        const std::vector<GLsizei> ones(firsts.size(), 1);
        glMultiDrawArrays(GL_POINTS, firsts.data(), ones.data(), static_cast<GLsizei>(ones.size()));
    }

private:
    /// Functions of OpenGL count points in this type.
    static constexpr std::size_t largestCount =
        std::numeric_limits<GLint>::max() / sizeof(PointVertex);

    bool Unmap() {
        if (mapped_ == 0) return false;
        mapped_ = 0;
        glBindBuffer(GL_ARRAY_BUFFER, buffer_.Name());
        return glUnmapBuffer(GL_ARRAY_BUFFER) == GL_TRUE;
    }
    static void PointAt(std::size_t first, std::size_t step) {
        const std::size_t begin = first * sizeof(PointVertex);
        const auto stride = static_cast<GLsizei>(step * sizeof(PointVertex));
        const auto at = [begin](std::size_t offset) {
            // OpenGL takes places in a buffer for pointers.
            // NOLINTNEXTLINE(performance-no-int-to-ptr)
            return reinterpret_cast<const void*>(begin + offset);
        };
        glEnableVertexAttribArray(0);
        glEnableVertexAttribArray(1);
        glVertexAttribPointer(0, 3, GL_FLOAT, GL_FALSE, stride, at(offsetof(PointVertex, x)));
        glVertexAttribIPointer(1, 1, GL_UNSIGNED_INT, stride, at(offsetof(PointVertex, colour)));
    }

    GlBuffer buffer_;
    GlVertexArray array_;
    std::size_t capacity_ = 0;
    std::size_t mapped_ = 0;
    std::size_t count_ = 0;
    glm::dvec3 origin_{0.0, 0.0, 0.0};
    double spacing_ = 0.0;
};

/// A direction, and how far along it the points' origin lies from a place.
std::array<float, 4> axis(const glm::dvec3& direction, const glm::dvec3& placeToOrigin) {
    return {static_cast<float>(direction.x), static_cast<float>(direction.y),
            static_cast<float>(direction.z),
            static_cast<float>(glm::dot(direction, placeToOrigin))};
}

}  // namespace

/// All that lives in the context. Its functions need it to be current.
class GlRenderer::Device {
public:
    Device(std::unique_ptr<GlContext> context, std::string& problem)
        : context_(std::move(context)),
          drawing_(gl_shaders::pointVertex(), gl_shaders::pointFragment(), problem),
          shading_(gl_shaders::shadingVertex(), gl_shaders::shadingFragment(), shadingProblem_) {
        if (problem.empty()) problem = shadingProblem_;
        glPixelStorei(GL_PACK_ALIGNMENT, 1);
        glEnable(GL_PROGRAM_POINT_SIZE);
        glDepthFunc(GL_LESS);
        GLint side = 0;
        std::array<GLint, 2> viewport = {0, 0};
        glGetIntegerv(GL_MAX_TEXTURE_SIZE, &side);
        glGetIntegerv(GL_MAX_VIEWPORT_DIMS, viewport.data());
        largestSide_ = std::min({side, viewport[0] - 2 * draw::DepthBuffer::margin,
                                 viewport[1] - 2 * draw::DepthBuffer::margin});
        if (takeGlErrors() && problem.empty()) problem = "The graphics driver refuses its work.";
    }
    ~Device() { context_->MakeCurrent(); }

    GlContext& Context() const { return *context_; }
    int LargestSide() const { return largestSide_; }
    PointBuffer& Points() { return points_; }
    const PointBuffer& Points() const { return points_; }

    /// Works without the context, too.
    void SetPicture(const ViewCamera& camera, const draw::ImageSize& size, const ViewStyle& style) {
        camera_ = camera;
        size_ = size;
        style_ = style;
    }
    void Begin() {
        const bool isTooLarge = std::max(size_.width, size_.height) > largestSide_;
        if (isTooLarge || (frame_ && frame_->Size() != size_)) frame_.reset();
        if (isTooLarge) return;
        if (!frame_) frame_.emplace(size_);
        if (!frame_->CanBeUsed()) {
            frame_.reset();
            if (context_->MakeCurrent()) throw std::bad_alloc();
            return;
        }
        frame_->Clear(style_.background);
    }
    void Draw(std::size_t first, std::size_t step) {
        if (!CanDraw()) return;
        frame_->BindPoints();
        const int margin = draw::DepthBuffer::margin;
        glViewport(-margin, -margin, size_.width + 2 * margin, size_.height + 2 * margin);
        glEnable(GL_DEPTH_TEST);
        drawing_.Use();
        SetView(drawing_);
        SetPlaces();
        points_.Draw(first, step);
        // A slice that has returned is drawn. Whoever measures it would learn nothing otherwise,
        // and all that was put off would be waited for at once, when the picture is read.
        glFinish();
        takeGlErrors();
    }
    draw::Image Empty() const { return {size_, style_.background}; }
    draw::Image Picture() {
        draw::Image image = Empty();
        if (!CanDraw()) return image;
        if (style_.shaded)
            Shade();
        else
            frame_->BindPoints();
        glReadBuffer(GL_COLOR_ATTACHMENT0);
        glReadPixels(0, 0, size_.width, size_.height, GL_RGB, GL_UNSIGNED_BYTE, &image[0]);
        takeGlErrors();
        return image;
    }
    std::optional<glm::dvec3> PlaceAt(const glm::ivec2& pixel) const {
        if (!CanDraw()) return std::nullopt;
        const glm::ivec2 last(size_.width - 1, size_.height - 1);
        const glm::ivec2 low = glm::clamp(pixel - coveredReach, glm::ivec2(0), last);
        const glm::ivec2 high = glm::clamp(pixel + coveredReach, glm::ivec2(0), last);
        const glm::ivec2 extent = high - low + 1;
        std::vector<float> depths(
            static_cast<std::size_t>(extent.x) * static_cast<std::size_t>(extent.y),
            gl_shaders::nothing);
        frame_->BindPoints();
        glReadBuffer(GL_COLOR_ATTACHMENT1);
        glReadPixels(low.x, low.y, extent.x, extent.y, GL_RED, GL_FLOAT, depths.data());
        if (takeGlErrors()) return std::nullopt;
        const auto depthAt = [&](const glm::ivec2& at) {
            return depths[static_cast<std::size_t>((at.y - low.y) * extent.x + at.x - low.x)];
        };
        const auto found = nearestCovered(
            pixel, size_, [&](const glm::ivec2& at) { return depthAt(at) != gl_shaders::nothing; });
        if (!found) return std::nullopt;
        const double beyond = camera_.perspective ? 0.0 : camera_.Distance();
        const draw::Point3 place = camera_.ProjectionTo(size_).At(
            {found->x + 0.5, found->y + 0.5, static_cast<double>(depthAt(*found)) + beyond});
        return glm::dvec3(place.x, place.y, place.z);
    }

private:
    bool CanDraw() const { return frame_ && frame_->CanBeUsed(); }
    void Shade() {
        frame_->BindShading();
        glViewport(0, 0, size_.width, size_.height);
        glDisable(GL_DEPTH_TEST);
        glBindVertexArray(nothing_.Name());
        shading_.Use();
        SetView(shading_);
        glUniform1i(shading_.Uniform("colours"), 0);
        glUniform1i(shading_.Uniform("depths"), 1);
        glDrawArrays(GL_TRIANGLES, 0, 3);
    }
    /// What both programs are told.
    void SetView(const GlProgram& program) const {
        const draw::Projection projection = camera_.ProjectionTo(size_);
        const draw::PointSize pointSize = pointSizeOf(style_, points_.Spacing(), 1.0);
        glUniform2f(program.Uniform("size"), static_cast<float>(size_.width),
                    static_cast<float>(size_.height));
        glUniform1i(program.Uniform("perspective"), camera_.perspective ? 1 : 0);
        glUniform1f(program.Uniform("pixels"),
                    static_cast<float>(camera_.perspective ? projection.FocalPixels()
                                                           : projection.Scale()));
        glUniform1f(program.Uniform("diameter"), static_cast<float>(*pointSize.diameter));
        glUniform1i(program.Uniform("inWorld"), pointSize.inWorld ? 1 : 0);
        if (const GLint square = program.Uniform("square"); square >= 0)
            glUniform1i(square, pointSize.square ? 1 : 0);
    }
    /// Only floats reach the card, so the large numbers are taken from each other here.
    void SetPlaces() const {
        const draw::Projection projection = camera_.ProjectionTo(size_);
        const glm::dvec3 begin = camera_.perspective ? camera_.eye : camera_.target;
        const glm::dvec3 beginToOrigin = points_.Origin() - begin;
        const double parallelScale = projection.Scale() / parallelDepthPixels;
        glUniform4fv(drawing_.Uniform("right"), 1, axis(camera_.Right(), beginToOrigin).data());
        glUniform4fv(drawing_.Uniform("up"), 1, axis(camera_.up, beginToOrigin).data());
        glUniform4fv(drawing_.Uniform("ahead"), 1, axis(camera_.Ahead(), beginToOrigin).data());
        glUniform1f(drawing_.Uniform("depthScale"), camera_.perspective
                                                        ? perspectiveDepthScale
                                                        : static_cast<float>(parallelScale));
    }

    std::unique_ptr<GlContext> context_;
    std::string shadingProblem_;
    GlProgram drawing_;
    GlProgram shading_;
    GlVertexArray nothing_;
    PointBuffer points_;
    int largestSide_ = 0;
    std::optional<Frame> frame_;
    ViewCamera camera_;
    draw::ImageSize size_;
    ViewStyle style_;
};

std::unique_ptr<GlRenderer> GlRenderer::Create(std::string& problem) {
    std::unique_ptr<GlContext> context = GlContext::Create(problem);
    if (context == nullptr) return nullptr;
    auto device = std::make_unique<Device>(std::move(context), problem);
    if (!problem.empty()) return nullptr;
    return std::unique_ptr<GlRenderer>(new GlRenderer(std::move(device)));
}

GlRenderer::GlRenderer(std::unique_ptr<Device> device) : device_(std::move(device)) {
}

GlRenderer::~GlRenderer() = default;

bool GlRenderer::IsSoftware() const {
    return device_->Context().IsSoftware();
}

bool GlRenderer::IsLost() const {
    return device_->Context().IsLost();
}

std::string GlRenderer::Name() const {
    return device_->Context().Renderer();
}

std::span<PointVertex> GlRenderer::OpenPoints(std::size_t count) {
    if (!device_->Context().MakeCurrent()) return {};
    return device_->Points().Open(count);
}

void GlRenderer::ClosePoints(std::size_t count, const glm::dvec3& origin, double spacing) {
    if (device_->Context().MakeCurrent()) device_->Points().Close(count, origin, spacing);
}

std::size_t GlRenderer::PointCount() const {
    return device_->Points().Count();
}

int GlRenderer::LargestSide() const {
    return device_->LargestSide();
}

std::size_t GlRenderer::BytesPerPixel() const {
    // The picture and its file; where there is no card, what would be in the card's memory, too.
    return IsSoftware() ? 24 : 8;
}

void GlRenderer::Begin(const ViewCamera& camera, const draw::ImageSize& size,
                       const ViewStyle& style) {
    device_->SetPicture(camera, size, style);
    if (device_->Context().MakeCurrent()) device_->Begin();
}

void GlRenderer::Draw(std::size_t first, std::size_t step) {
    if (device_->Context().MakeCurrent()) device_->Draw(first, step);
}

draw::Image GlRenderer::Picture() {
    if (!device_->Context().MakeCurrent()) return device_->Empty();
    return device_->Picture();
}

std::optional<glm::dvec3> GlRenderer::PlaceAt(const glm::ivec2& pixel) const {
    if (!device_->Context().MakeCurrent()) return std::nullopt;
    return device_->PlaceAt(pixel);
}

void GlRenderer::Release() {
    device_->Context().Release();
}

}  // namespace vpc::viewer
