#pragma once

#include <string_view>
#include <vector>

namespace vpc::draw {

/// The shapes of letters, digits and some signs as lines, which a pen of any width can follow.
///
/// Lengths are in units of which a capital letter is six high. Letters stand on height 0, and
/// heights grow upwards.
class StrokeFont {
public:
    struct Point {
        float x = 0.0F;
        float y = 0.0F;
    };
    using Stroke = std::vector<Point>;

    static constexpr float capitalHeight = 6.0F;
    /// How far letters such as "g" reach below height 0.
    static constexpr float descent = 2.0F;

    /// The strokes of a line of text that begins at x = 0. A sign that the font lacks is left
    /// blank.
    static std::vector<Stroke> Write(std::string_view text);
    static float Width(std::string_view text);
};

}  // namespace vpc::draw
