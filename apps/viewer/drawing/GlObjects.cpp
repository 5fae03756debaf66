#include "viewer/drawing/GlObjects.h"

#include <array>

namespace vpc::viewer {

namespace {

class Shader {
public:
    Shader(GLenum kind, const std::string& source) : name_(glCreateShader(kind)) {
        const char* const text = source.c_str();
        glShaderSource(name_, 1, &text, nullptr);
        glCompileShader(name_);
    }
    ~Shader() { glDeleteShader(name_); }
    Shader(const Shader&) = delete;
    Shader& operator=(const Shader&) = delete;
    GLuint Name() const { return name_; }
    std::string Problem() const {
        GLint done = GL_FALSE;
        glGetShaderiv(name_, GL_COMPILE_STATUS, &done);
        std::array<char, 1024> text{};
        if (done != GL_TRUE)
            glGetShaderInfoLog(name_, static_cast<GLsizei>(text.size()), nullptr, text.data());
        return done == GL_TRUE ? ""
                               : "The graphics driver takes no shader. " + std::string(text.data());
    }

private:
    GLuint name_;
};

}  // namespace

GlProgram::GlProgram(const std::string& vertexSource, const std::string& fragmentSource,
                     std::string& problem) {
    const Shader vertex(GL_VERTEX_SHADER, vertexSource);
    const Shader fragment(GL_FRAGMENT_SHADER, fragmentSource);
    problem = vertex.Problem() + fragment.Problem();
    if (!problem.empty()) return;
    glAttachShader(program_.Name(), vertex.Name());
    glAttachShader(program_.Name(), fragment.Name());
    glLinkProgram(program_.Name());
    GLint done = GL_FALSE;
    glGetProgramiv(program_.Name(), GL_LINK_STATUS, &done);
    if (done != GL_TRUE) problem = "The graphics driver cannot link the shaders.";
}

bool takeGlErrors() {
    // A driver that has given up reports its last error for ever.
    bool any = false;
    for (int i = 0; i < 16 && glGetError() != GL_NO_ERROR; ++i) any = true;
    return any;
}

}  // namespace vpc::viewer
