#include "draw/StrokeFont.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace vpc::draw {

namespace {

using Point = StrokeFont::Point;
using Stroke = StrokeFont::Stroke;

/// Strokes with blanks between. A stroke is a kind, '-' for a line with corners, '~' for a curve
/// and 'o' for a closed curve, and its points: two digits each, x from the left and y from two
/// units below the letter's foot. A curve begins and ends in its outer points and comes near the
/// others.
struct Shape {
    char sign;
    std::string_view strokes;
};

constexpr std::array shapes = {Shape{'0', "o08484202"},
                               Shape{'1', "-172822"},
                               Shape{'2', "~0708484602 -0242"},
                               Shape{'3', "~0708484515 ~1545420203"},
                               Shape{'4', "-3832 -380444"},
                               Shape{'5', "-480805 ~052646420203"},
                               Shape{'6', "o05454202 ~380803"},
                               Shape{'7', "-084812"},
                               Shape{'8', "o08484505 o05454202"},
                               Shape{'9', "o08484505 ~474212"},
                               Shape{'.', "-0202"},
                               Shape{',', "-0201"},
                               Shape{':', "-0202 -0505"},
                               Shape{'-', "-0535"},
                               Shape{'+', "-0545 -2327"},
                               Shape{'/', "-0148"},
                               Shape{'(', "~29070311"},
                               Shape{')', "~09272301"},
                               Shape{'a', "o06464202 -4642"},
                               Shape{'b', "o06464202 -0802"},
                               Shape{'c', "~454606024243"},
                               Shape{'d', "o06464202 -4842"},
                               Shape{'e', "-0444 ~444606024243"},
                               Shape{'f', "~121838 -0636"},
                               Shape{'g', "o06464202 ~46400001"},
                               Shape{'h', "-0802 ~04064642"},
                               Shape{'i', "-0206 -0808"},
                               Shape{'j', "~161000 -1818"},
                               Shape{'k', "-0802 -360432"},
                               Shape{'l', "-0802"},
                               Shape{'m', "-0602 ~04063632 ~34366662"},
                               Shape{'n', "-0602 ~04064642"},
                               Shape{'o', "o06464202"},
                               Shape{'p', "-0600 o06464202"},
                               Shape{'q', "-4640 o06464202"},
                               Shape{'r', "-0602 ~040636"},
                               Shape{'s', "~45460604444202 -0203"},
                               Shape{'t', "~181232 -0636"},
                               Shape{'u', "~06024244 -4642"},
                               Shape{'v', "-062246"},
                               Shape{'w', "-0612365266"},
                               Shape{'x', "-0642 -4602"},
                               Shape{'y', "-0622 -4610"},
                               Shape{'z', "-06460242"},
                               Shape{'A', "-022842 -1434"},
                               Shape{'B', "-0208 ~08484505 ~05454202"},
                               Shape{'C', "~474808024243"},
                               Shape{'D', "-0208 ~08484202"},
                               Shape{'E', "-48080242 -0535"},
                               Shape{'F', "-480802 -0535"},
                               Shape{'G', "~474808024244 -4424"},
                               Shape{'H', "-0802 -4842 -0545"},
                               Shape{'I', "-0802"},
                               Shape{'J', "~38320203"},
                               Shape{'K', "-0802 -480542"},
                               Shape{'L', "-080242"},
                               Shape{'M', "-0208346862"},
                               Shape{'N', "-02084248"},
                               Shape{'O', "o08484202"},
                               Shape{'P', "-0208 ~08484505"},
                               Shape{'Q', "o08484202 -2442"},
                               Shape{'R', "-0208 ~08484505 -2542"},
                               Shape{'S', "~4748080545420203"},
                               Shape{'T', "-0848 -2822"},
                               Shape{'U', "~08024248"},
                               Shape{'V', "-082248"},
                               Shape{'W', "-0812365268"},
                               Shape{'X', "-0842 -4802"},
                               Shape{'Y', "-082548 -2522"},
                               Shape{'Z', "-08480242"}};

/// Between two letters, and the width of a blank.
constexpr float gap = 2.0F;
constexpr float blank = 2.0F;
/// Straight pieces that stand for the bend at one point of a curve.
constexpr int piecesOfBend = 6;

std::string_view strokesOf(char sign) {
    for (const Shape& shape : shapes)
        if (shape.sign == sign) return shape.strokes;
    return {};
}

Point middle(const Point& a, const Point& b) {
    return {(a.x + b.x) / 2.0F, (a.y + b.y) / 2.0F};
}

/// A curve from `a` to `c` that leaves and arrives in the direction of `b`.
void addBend(Stroke& stroke, const Point& a, const Point& b, const Point& c) {
    for (int piece = 1; piece <= piecesOfBend; ++piece) {
        const float t = static_cast<float>(piece) / static_cast<float>(piecesOfBend);
        const float u = 1.0F - t;
        stroke.push_back({u * u * a.x + 2.0F * u * t * b.x + t * t * c.x,
                          u * u * a.y + 2.0F * u * t * b.y + t * t * c.y});
    }
}

/// The curve bends at every inner point, from the middle before it to the middle behind it.
Stroke openCurve(const Stroke& points) {
    Stroke curve{points.front()};
    for (std::size_t i = 1; i + 1 < points.size(); ++i) {
        const bool last = i + 2 == points.size();
        addBend(curve, Point(curve.back()), points[i],
                last ? points[i + 1] : middle(points[i], points[i + 1]));
    }
    return curve;
}

Stroke closedCurve(const Stroke& points) {
    Stroke curve{middle(points.back(), points.front())};
    for (std::size_t i = 0; i < points.size(); ++i)
        addBend(curve, Point(curve.back()), points[i],
                middle(points[i], points[(i + 1) % points.size()]));
    return curve;
}

Stroke parseStroke(std::string_view text) {
    Stroke points;
    for (std::size_t i = 1; i + 1 < text.size(); i += 2)
        points.push_back({static_cast<float>(text[i] - '0'),
                          static_cast<float>(text[i + 1] - '0') - StrokeFont::descent});
    if (text[0] == '~') return openCurve(points);
    if (text[0] == 'o') return closedCurve(points);
    return points;
}

std::vector<Stroke> strokesFrom(std::string_view text) {
    std::vector<Stroke> strokes;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find(' '), text.size());
        strokes.push_back(parseStroke(text.substr(0, end)));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return strokes;
}

/// Writes the text and returns where the next letter would begin.
float write(std::string_view text, std::vector<Stroke>& written) {
    float x = 0.0F;
    for (const char sign : text) {
        float width = blank;
        std::vector<Stroke> strokes = strokesFrom(strokesOf(sign));
        if (!strokes.empty()) width = 0.0F;
        for (Stroke& stroke : strokes) {
            for (Point& point : stroke) {
                width = std::max(width, point.x);
                point.x += x;
            }
            written.push_back(std::move(stroke));
        }
        x += width + gap;
    }
    return x;
}

}  // namespace

std::vector<StrokeFont::Stroke> StrokeFont::Write(std::string_view text) {
    std::vector<Stroke> strokes;
    write(text, strokes);
    return strokes;
}

float StrokeFont::Width(std::string_view text) {
    std::vector<Stroke> ignored;
    return text.empty() ? 0.0F : write(text, ignored) - gap;
}

}  // namespace vpc::draw
