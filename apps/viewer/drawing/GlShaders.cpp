#include "viewer/drawing/GlShaders.h"

#include <array>
#include <charconv>

#include "draw/EyeDomeShading.h"
#include "draw/PointSize.h"

namespace vpc::viewer::gl_shaders {

namespace {

std::string constant(const std::string& name, float value) {
    std::array<char, 32> text;
    const auto end = std::to_chars(text.data(), text.data() + text.size(), value).ptr;
    return "const float " + name + " = float(" + std::string(text.data(), end) + ");\n";
}

std::string head() {
    using draw::PointSize;
    namespace dome = draw::eye_dome;
    return "#version 330 core\n" + constant("nothing", nothing) +
           constant("beyondAll", dome::beyondAll) + constant("strength", dome::strength) +
           constant("halfway", dome::halfway) + constant("reachInRadii", dome::reachInRadii) +
           constant("leastReach", dome::leastReach) + constant("mostReach", dome::mostReach) +
           constant("rimDepth", PointSize::rimDepth) +
           constant("margin", draw::DepthBuffer::margin) +
           constant("smallestRadius", PointSize::smallestRadius) +
           constant("largestRadius", PointSize::largestRadius) + R"(
uniform vec2 size;
uniform bool perspective;
// A distance of the world in pixels: at a depth of 1 in perspective.
uniform float pixels;
uniform float diameter;
uniform bool inWorld;

float pixelSide(float depth) {
    return perspective ? depth / pixels : 1.0 / pixels;
}
float radiusAt(float depth) {
    float radius = diameter / 2.0 / (inWorld ? pixelSide(depth) : 1.0);
    return clamp(radius, smallestRadius, largestRadius);
}
)";
}

}  // namespace

std::string pointVertex() {
    return head() + R"(
layout(location = 0) in vec3 place;
layout(location = 1) in uint colour;
// Three directions, and how far the points' origin lies from the eye along them.
uniform vec4 right;
uniform vec4 up;
uniform vec4 ahead;
uniform bool square;
flat out vec3 tint;
// The middle of the pixel that the point is in.
flat out vec2 middle;
flat out float depth;
flat out float square_radius;
flat out float fall;

float along(vec4 direction) {
    return direction.x * place.x + direction.y * place.y + direction.z * place.z + direction.w;
}
void main() {
    depth = along(ahead);
    float scale = perspective ? pixels / depth : pixels;
    vec2 at = size / 2.0 + vec2(along(right), -along(up)) * scale;
    vec2 beside = abs(at - size / 2.0) - size / 2.0;
    // Comparisons with what is no number are false.
    bool seen = abs(depth) < nothing && (!perspective || depth > 0.0) && beside.x < margin &&
                beside.y < margin;
    float radius = seen ? radiusAt(depth) : 1.0;
    float side = 1.0;
    vec2 corner = floor(at);
    middle = corner + 0.5;
    if (square) {
        side = floor(2.0 * radius + 0.5);
        corner -= floor((side - 1.0) / 2.0);
    } else if (radius >= 1.0) {
        side = 2.0 * floor(radius) + 1.0;
        corner -= floor(radius);
    }
    square_radius = square || radius < 1.0 ? nothing : radius * radius;
    fall = side > 1.0 ? rimDepth * pixelSide(depth) / radius : 0.0;
    tint = vec3((colour >> 16) & 0xFFu, (colour >> 8) & 0xFFu, colour & 0xFFu) / 255.0;
    gl_PointSize = side;
    // The viewport is larger than the picture by the margin.
    vec2 share = (corner + side / 2.0 + margin) / (size + 2.0 * margin);
    gl_Position = seen ? vec4(share * 2.0 - 1.0, 0.0, 1.0) : vec4(2.0, 2.0, 2.0, 1.0);
}
)";
}

std::string pointFragment() {
    return head() + R"(
flat in vec3 tint;
flat in vec2 middle;
flat in float depth;
flat in float square_radius;
flat in float fall;
uniform float depthScale;
layout(location = 0) out vec4 colour;
layout(location = 1) out float seenDepth;

void main() {
    vec2 away = gl_FragCoord.xy - middle;
    float square_away = dot(away, away);
    if (square_away > square_radius) discard;
    float order = (depth + fall * square_away) * depthScale;
    // In parallel projection depths may be negative, and are told apart best near the target.
    gl_FragDepth = perspective ? order : 0.5 + 0.5 * order / (abs(order) + 1.0);
    colour = vec4(tint, 1.0);
    seenDepth = depth;
}
)";
}

std::string shadingVertex() {
    return R"(#version 330 core
void main() {
    gl_Position = vec4(gl_VertexID == 1 ? 3.0 : -1.0, gl_VertexID == 2 ? 3.0 : -1.0, 0.0, 1.0);
}
)";
}

std::string shadingFragment() {
    return head() + R"(
uniform sampler2D colours;
uniform sampler2D depths;
layout(location = 0) out vec4 colour;

float nearness(float depth) {
    return perspective ? 1.0 / depth : -depth;
}
// How far, in sides of a pixel, the mean of two opposite neighbours comes nearer to the eye.
float rise(ivec2 pixel, ivec2 offset, float own) {
    float a = texelFetch(depths, pixel + offset, 0).r;
    float b = texelFetch(depths, pixel - offset, 0).r;
    if (a == nothing || b == nothing) return 0.0;
    float nearer = nearness(a) + nearness(b) - 2.0 * own;
    return max(nearer, 0.0) * (perspective ? pixels / own : pixels);
}
void main() {
    const ivec2 directions[4] = ivec2[](ivec2(1, 0), ivec2(0, 1), ivec2(1, 1), ivec2(1, -1));
    ivec2 pixel = ivec2(gl_FragCoord.xy);
    colour = texelFetch(colours, pixel, 0);
    float depth = texelFetch(depths, pixel, 0).r;
    if (depth == nothing) return;
    float own = nearness(depth);
    int wanted = int(clamp(floor(reachInRadii * radiusAt(depth)), leastReach, mostReach));
    ivec2 room = min(ivec2(wanted), min(pixel, ivec2(size) - 1 - pixel));
    float sum = 0.0;
    float count = 0.0;
    for (int i = 0; i < 4; ++i) {
        ivec2 direction = directions[i];
        int reach = direction.x == 0 ? room.y : direction.y == 0 ? room.x : min(room.x, room.y);
        if (2 * reach < wanted) continue;
        float risen = rise(pixel, direction * reach, own) / float(reach);
        sum += risen < beyondAll ? risen / (risen + halfway) : 1.0;
        count += 1.0;
    }
    if (count > 0.0) colour.rgb *= 1.0 - strength * sum / count;
}
)";
}

}  // namespace vpc::viewer::gl_shaders
