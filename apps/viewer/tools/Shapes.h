#pragma once

#include <string>
#include <vector>

#include <glm/vec2.hpp>
#include <glm/vec3.hpp>

#include "draw/Colour.h"

namespace vpc::viewer {

/// What is laid over the points: outlines of planes and clips, marks, labels. Positions are in
/// drawing coordinates, doubles as all positions; widths are in pixels of the window and grow with
/// a larger screenshot.
struct Shapes {
    struct Line {
        glm::dvec3 from;
        glm::dvec3 to;
        draw::Colour colour;
        float width = 2.0F;
    };
    /// A cross in a ring.
    struct Mark {
        glm::dvec3 place;
        draw::Colour colour;
    };
    struct Label {
        glm::dvec3 place;
        std::string text;
        draw::Colour colour;
    };
    /// A line of the window, in shares of its width and height, from the top left: a rubber band.
    struct ScreenLine {
        glm::dvec2 from;
        glm::dvec2 to;
        draw::Colour colour;
    };

    std::vector<Line> lines;
    std::vector<Mark> marks;
    std::vector<Label> labels;
    std::vector<ScreenLine> screenLines;
};

}  // namespace vpc::viewer
