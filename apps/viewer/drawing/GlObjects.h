#pragma once

#include <epoxy/gl.h>

#include <string>
#include <utility>

namespace vpc::viewer {

/// Owns an object of OpenGL. The context that it was made in must be current when it goes.
template <class Kind>
class GlObject {
public:
    GlObject() : name_(Kind::Make()) {}
    ~GlObject() {
        if (name_ != 0) Kind::Delete(name_);
    }
    GlObject(GlObject&& other) noexcept : name_(std::exchange(other.name_, 0)) {}
    GlObject& operator=(GlObject&& other) noexcept {
        std::swap(name_, other.name_);
        return *this;
    }
    GLuint Name() const { return name_; }

private:
    GLuint name_;
};

struct GlBufferKind {
    static GLuint Make() {
        GLuint name = 0;
        glGenBuffers(1, &name);
        return name;
    }
    static void Delete(GLuint name) { glDeleteBuffers(1, &name); }
};
struct GlVertexArrayKind {
    static GLuint Make() {
        GLuint name = 0;
        glGenVertexArrays(1, &name);
        return name;
    }
    static void Delete(GLuint name) { glDeleteVertexArrays(1, &name); }
};
struct GlTextureKind {
    static GLuint Make() {
        GLuint name = 0;
        glGenTextures(1, &name);
        return name;
    }
    static void Delete(GLuint name) { glDeleteTextures(1, &name); }
};
struct GlFramebufferKind {
    static GLuint Make() {
        GLuint name = 0;
        glGenFramebuffers(1, &name);
        return name;
    }
    static void Delete(GLuint name) { glDeleteFramebuffers(1, &name); }
};
struct GlProgramKind {
    static GLuint Make() { return glCreateProgram(); }
    static void Delete(GLuint name) { glDeleteProgram(name); }
};

using GlBuffer = GlObject<GlBufferKind>;
using GlVertexArray = GlObject<GlVertexArrayKind>;
using GlTexture = GlObject<GlTextureKind>;
using GlFramebuffer = GlObject<GlFramebufferKind>;

/// Shaders that are linked to a program.
class GlProgram {
public:
    /// \param problem gets the driver's message where it does not take the sources
    GlProgram(const std::string& vertexSource, const std::string& fragmentSource,
              std::string& problem);

    void Use() const { glUseProgram(program_.Name()); }
    GLint Uniform(const char* name) const { return glGetUniformLocation(program_.Name(), name); }

private:
    GlObject<GlProgramKind> program_;
};

/// Forgets the errors that calls have left. Returns whether there were any.
bool takeGlErrors();

}  // namespace vpc::viewer
