#pragma once

#include <epoxy/egl.h>

#include <memory>
#include <string>

namespace vpc::viewer {

/// An OpenGL 3.3 core context without a window. It stands alone: it shares nothing with others.
class GlContext {
public:
    /// Null where there is none; a graphics card's before that of a software rasteriser.
    /// \param problem then gets the reason: a sentence
    static std::unique_ptr<GlContext> Create(std::string& problem);
    ~GlContext();
    GlContext(const GlContext&) = delete;
    GlContext& operator=(const GlContext&) = delete;

    /// Makes it the calling thread's, which it stays. False where the driver has given up, or
    /// where it is another thread's: no function of OpenGL may be called then.
    bool MakeCurrent();
    /// Leaves the calling thread, so that another one can make it its own.
    void Release();
    bool IsLost() const { return isLost_; }
    /// What draws, as the driver names it.
    const std::string& Renderer() const { return renderer_; }
    bool IsSoftware() const;

private:
    explicit GlContext(EGLDisplay display) : display_(display) {}
    static std::unique_ptr<GlContext> CreateOn(EGLDisplay display, std::string& problem);
    bool Open(std::string& problem);
    bool MakeSurface(EGLConfig config);
    /// Whether the driver says that it was reset, as far as it tells.
    bool WasReset() const;

    EGLDisplay display_;
    EGLContext context_ = EGL_NO_CONTEXT;
    /// Only where the driver wants one.
    EGLSurface surface_ = EGL_NO_SURFACE;
    std::string renderer_;
    bool tellsOfResets_ = false;
    bool isLost_ = false;
};

}  // namespace vpc::viewer
