#include "viewer/drawing/GlContext.h"

#include <epoxy/gl.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <vector>

namespace vpc::viewer {

namespace {

constexpr const char* noDisplay =
    "No display on this computer offers OpenGL, so the processor draws the points.";
constexpr const char* noContext =
    "The graphics driver does not offer OpenGL 3.3, so the processor draws the points.";

/// Where contexts may come from, the best first. Displays are the process's and shared with all who
/// ask for the same one, so nobody closes them.
std::vector<EGLDisplay> displays() {
    std::vector<EGLDisplay> found;
    if (epoxy_has_egl_extension(EGL_NO_DISPLAY, "EGL_EXT_platform_base") &&
        epoxy_has_egl_extension(EGL_NO_DISPLAY, "EGL_MESA_platform_surfaceless"))
        found.push_back(
            eglGetPlatformDisplayEXT(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY, nullptr));
    found.push_back(eglGetDisplay(EGL_DEFAULT_DISPLAY));
    std::erase(found, EGL_NO_DISPLAY);
    std::erase_if(found, [](EGLDisplay display) {
        return eglInitialize(display, nullptr, nullptr) != EGL_TRUE;
    });
    return found;
}

std::string textOf(GLenum name) {
    const GLubyte* const text = glGetString(name);
    return text == nullptr ? "" : reinterpret_cast<const char*>(text);
}

}  // namespace

std::unique_ptr<GlContext> GlContext::Create(std::string& problem) {
    problem = noDisplay;
    if (!epoxy_has_egl()) return nullptr;
    std::unique_ptr<GlContext> best;
    for (const EGLDisplay display : displays()) {
        std::unique_ptr<GlContext> context = CreateOn(display, problem);
        if (context != nullptr && (best == nullptr || best->IsSoftware()))
            best = std::move(context);
        if (best != nullptr && !best->IsSoftware()) break;
    }
    // One that was tried later has left none current.
    if (best == nullptr || !best->MakeCurrent()) return nullptr;
    problem.clear();
    return best;
}

std::unique_ptr<GlContext> GlContext::CreateOn(EGLDisplay display, std::string& problem) {
    std::unique_ptr<GlContext> context(new GlContext(display));
    return context->Open(problem) ? std::move(context) : nullptr;
}

bool GlContext::Open(std::string& problem) {
    problem = noContext;
    const bool needsSurface = !epoxy_has_egl_extension(display_, "EGL_KHR_surfaceless_context");
    const std::array<EGLint, 5> wanted = {EGL_RENDERABLE_TYPE, EGL_OPENGL_BIT, EGL_SURFACE_TYPE,
                                          needsSurface ? EGL_PBUFFER_BIT : 0, EGL_NONE};
    EGLConfig config = nullptr;
    EGLint configs = 0;
    if (eglBindAPI(EGL_OPENGL_API) != EGL_TRUE ||
        eglChooseConfig(display_, wanted.data(), &config, 1, &configs) != EGL_TRUE || configs < 1)
        return false;
    if (needsSurface && !MakeSurface(config)) return false;

    std::vector<EGLint> version = {
        EGL_CONTEXT_MAJOR_VERSION_KHR,       3,
        EGL_CONTEXT_MINOR_VERSION_KHR,       3,
        EGL_CONTEXT_OPENGL_PROFILE_MASK_KHR, EGL_CONTEXT_OPENGL_CORE_PROFILE_BIT_KHR};
    std::vector<EGLint> withResets = version;
    withResets.insert(withResets.end(), {EGL_CONTEXT_OPENGL_RESET_NOTIFICATION_STRATEGY_EXT,
                                         EGL_LOSE_CONTEXT_ON_RESET_EXT, EGL_NONE});
    version.push_back(EGL_NONE);
    if (epoxy_has_egl_extension(display_, "EGL_EXT_create_context_robustness"))
        context_ = eglCreateContext(display_, config, EGL_NO_CONTEXT, withResets.data());
    if (context_ == EGL_NO_CONTEXT)
        context_ = eglCreateContext(display_, config, EGL_NO_CONTEXT, version.data());
    if (context_ == EGL_NO_CONTEXT || !MakeCurrent()) return false;
    if (epoxy_gl_version() < 33) return false;
    renderer_ = textOf(GL_RENDERER);
    tellsOfResets_ = epoxy_has_gl_extension("GL_ARB_robustness");
    return true;
}

bool GlContext::MakeSurface(EGLConfig config) {
    const std::array<EGLint, 5> size = {EGL_WIDTH, 1, EGL_HEIGHT, 1, EGL_NONE};
    surface_ = eglCreatePbufferSurface(display_, config, size.data());
    return surface_ != EGL_NO_SURFACE;
}

GlContext::~GlContext() {
    eglMakeCurrent(display_, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
    if (context_ != EGL_NO_CONTEXT) eglDestroyContext(display_, context_);
    if (surface_ != EGL_NO_SURFACE) eglDestroySurface(display_, surface_);
}

bool GlContext::MakeCurrent() {
    if (isLost_) return false;
    eglBindAPI(EGL_OPENGL_API);
    if (eglGetCurrentContext() != context_ &&
        eglMakeCurrent(display_, surface_, surface_, context_) != EGL_TRUE) {
        isLost_ = eglGetError() == EGL_CONTEXT_LOST;
        return false;
    }
    isLost_ = WasReset();
    return !isLost_;
}

void GlContext::Release() {
    eglBindAPI(EGL_OPENGL_API);
    if (eglGetCurrentContext() == context_)
        eglMakeCurrent(display_, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
}

bool GlContext::WasReset() const {
    return tellsOfResets_ && glGetGraphicsResetStatusARB() != GL_NO_ERROR;
}

bool GlContext::IsSoftware() const {
    std::string name = renderer_;
    std::transform(name.begin(), name.end(), name.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    // SWR is asked for by its whole name, which is short enough to be part of others.
    for (const char* const software : {"llvmpipe", "softpipe", "swrast", "software rasterizer"})
        if (name.find(software) != std::string::npos) return true;
    return name.starts_with("swr");
}

}  // namespace vpc::viewer
