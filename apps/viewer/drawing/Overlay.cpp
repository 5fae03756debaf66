#include "viewer/drawing/Overlay.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <optional>
#include <tuple>
#include <utility>

#include <glm/geometric.hpp>

#include "draw/Ink.h"
#include "draw/Legend.h"
#include "draw/OverlayStyle.h"
#include "draw/ScaleBar.h"
#include "viewer/drawing/ScreenLines.h"

namespace vpc::viewer {

namespace {

constexpr draw::Colour xColour{233, 84, 74};
constexpr draw::Colour yColour{122, 196, 76};
constexpr draw::Colour zColour{84, 144, 250};
/// Of an axis that points away from the eye.
constexpr float farAxisShare = 0.45F;

/// Lengths that follow, in heights of the text.
constexpr float axisLength = 3.0F;
constexpr float axisLetterGap = 0.9F;
constexpr float markRadius = 0.75F;
constexpr float markGap = 0.3F;
constexpr float labelGap = 1.2F;
constexpr float labelSpace = 0.5F;
/// What is darker around a mark, in widths of a line.
constexpr float haloWidths = 2.4F;

/// Lays the overlay over one picture.
class Painter {
public:
    Painter(draw::Image& image, const ViewCamera& camera, const draw::OverlayStyle& style,
            float enlargement)
        : image_(image),
          camera_(camera),
          lines_(camera, image.Size()),
          style_(style),
          enlargement_(enlargement) {}

    void Draw(const Shapes& shapes) {
        for (const Shapes::Line& line : shapes.lines)
            if (const auto seen = lines_.Between(line.from, line.to))
                Draw(*seen, line.colour, line.width * enlargement_);
        const glm::dvec2 size(image_.Size().width, image_.Size().height);
        for (const Shapes::ScreenLine& line : shapes.screenLines)
            if (const auto seen = lines_.OnScreen(line.from * size, line.to * size))
                Draw(*seen, line.colour, style_.lineWidth);
        LayInks();
        for (const Shapes::Mark& mark : shapes.marks)
            if (const auto at = lines_.At(mark.place)) DrawMark(*at, mark.colour);
        for (const Shapes::Label& label : shapes.labels)
            if (const auto at = lines_.At(label.place)) DrawLabel(*at, label);
    }
    void DrawAxes() const {
        struct Axis {
            glm::dvec3 direction;
            const char* letter;
            draw::Colour colour;
        };
        std::array<Axis, 3> axes = {Axis{{1, 0, 0}, "X", xColour}, Axis{{0, 1, 0}, "Y", yColour},
                                    Axis{{0, 0, 1}, "Z", zColour}};
        const glm::dvec3 ahead = camera_.Ahead();
        std::sort(axes.begin(), axes.end(), [&ahead](const Axis& a, const Axis& b) {
            return glm::dot(a.direction, ahead) > glm::dot(b.direction, ahead);
        });
        const float text = style_.textHeight;
        const float room = (axisLength + axisLetterGap) * text + 2.0F * style_.space;
        const float x = static_cast<float>(image_.Size().width) - room;
        const float y = room;
        const glm::dvec3 right = camera_.Right();
        for (const Axis& axis : axes) {
            const auto across = static_cast<float>(glm::dot(axis.direction, right));
            const auto down = -static_cast<float>(glm::dot(axis.direction, camera_.up));
            const float length = axisLength * text;
            const float letterX = x + across * (length + axisLetterGap * text);
            const float letterY = y + down * (length + axisLetterGap * text);
            const float width = draw::Ink::TextWidth(axis.letter, text);
            draw::Ink ink;
            ink.Line(x, y, x + across * length, y + down * length, 1.4F * style_.lineWidth);
            ink.Text(axis.letter, letterX - width / 2.0F, letterY + text / 2.0F, text,
                     style_.lineWidth);
            const bool isFar = glm::dot(axis.direction, ahead) > 0.05;
            ink.LayOver(image_,
                        isFar ? axis.colour.Mixed(style_.panel, farAxisShare) : axis.colour);
        }
    }

private:
    void Draw(const ScreenLines::Line& line, const draw::Colour& colour, float width) {
        const auto key = std::tuple(colour.red, colour.green, colour.blue);
        inks_[key].Line(line.from.x, line.from.y, line.to.x, line.to.y, width);
    }
    /// All lines of a colour are laid over the picture together, which takes little longer than
    /// one.
    void LayInks() {
        for (const auto& [key, ink] : inks_)
            ink.LayOver(image_, {std::get<0>(key), std::get<1>(key), std::get<2>(key)});
        inks_.clear();
    }
    void DrawMark(const glm::vec2& at, const draw::Colour& colour) const {
        const float radius = markRadius * style_.textHeight;
        const float inner = markGap * style_.textHeight;
        const auto lay = [&](float width, const draw::Colour& tint) {
            draw::Ink ink;
            constexpr int corners = 32;
            for (int i = 0; i < corners; ++i) {
                const auto corner = [&](int number) {
                    const float angle = 6.2831853F * static_cast<float>(number) / corners;
                    return at + radius * glm::vec2(std::cos(angle), std::sin(angle));
                };
                const glm::vec2 a = corner(i), b = corner(i + 1);
                ink.Line(a.x, a.y, b.x, b.y, width);
            }
            for (const glm::vec2& way : {glm::vec2(1, 0), glm::vec2(0, 1)}) {
                for (const float side : {-1.0F, 1.0F}) {
                    const glm::vec2 a = at + side * inner * way;
                    const glm::vec2 b = at + side * 1.5F * radius * way;
                    ink.Line(a.x, a.y, b.x, b.y, width);
                }
            }
            ink.LayOver(image_, tint);
        };
        lay(haloWidths * style_.lineWidth, style_.panel);
        lay(style_.lineWidth, colour);
    }
    void DrawLabel(const glm::vec2& at, const Shapes::Label& label) const {
        const float text = style_.textHeight;
        const float space = labelSpace * text;
        draw::Rectangle panel;
        panel.width = draw::Ink::TextWidth(label.text, text) + 2.0F * space;
        panel.height = text + 2.0F * space;
        panel.left = at.x + labelGap * text;
        panel.top = at.y - labelGap * text - panel.height;
        // A label stays in the picture, beside its place.
        const float room = static_cast<float>(image_.Size().width) - panel.width;
        if (panel.left > room) panel.left = std::max(at.x - labelGap * text - panel.width, 0.0F);
        if (panel.top < 0.0F) panel.top = at.y + labelGap * text;
        panel.Cover(image_, style_.panel);
        draw::Ink ink;
        ink.Text(label.text, panel.left + space, panel.Bottom() - space, text, style_.lineWidth);
        ink.LayOver(image_, label.colour);
    }

    draw::Image& image_;
    const ViewCamera& camera_;
    ScreenLines lines_;
    draw::OverlayStyle style_;
    float enlargement_;
    std::map<std::tuple<std::uint8_t, std::uint8_t, std::uint8_t>, draw::Ink> inks_;
};

}  // namespace

void Overlay::LayOver(draw::Image& image, const ViewCamera& camera, const ViewStyle& style,
                      const draw::ImageSize& window) const {
    const float enlargement =
        static_cast<float>(image.Size().height) / static_cast<float>(window.height);
    const draw::OverlayStyle sizes =
        draw::OverlayStyle(window, style.background).Enlarged(enlargement);
    Painter painter(image, camera, sizes, enlargement);
    painter.Draw(shapes);
    if (style.scaleBar) draw::drawScaleBar(image, camera.ProjectionTo(image.Size()), unit, sizes);
    if (style.legend) {
        float right = 0.0F;
        for (const Legend& legend : legends) {
            const draw::Rectangle room =
                draw::drawLegend(image, legend.ramp, legend.title, sizes, right);
            right = static_cast<float>(image.Size().width) - room.left;
        }
    }
    if (style.axes) painter.DrawAxes();
}

}  // namespace vpc::viewer
