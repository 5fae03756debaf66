#include "viewer/drawing/Overlay.h"

#include <gtest/gtest.h>

#include <limits>

#include <glm/common.hpp>
#include <glm/geometric.hpp>

namespace vpc::viewer {
namespace {

constexpr draw::ImageSize window{400, 300};
constexpr draw::Colour background{0, 0, 0}, red{255, 0, 0}, green{0, 255, 0}, blue{0, 0, 255};
constexpr glm::dvec3 ground{400'000.0, 5'000'000.0, 100.0};

/// Looks down from 100 above the ground; the picture is 30 high there, so a pixel is 0.1 wide.
ViewCamera fromAbove(bool perspective = true) {
    return {ground + glm::dvec3(0.0, 0.0, 100.0), ground, {0.0, 1.0, 0.0}, 30.0, perspective};
}

ViewStyle plain() {
    ViewStyle style;
    style.background = background;
    style.axes = style.scaleBar = style.legend = false;
    return style;
}

draw::Image laid(const Overlay& overlay, const ViewStyle& style, int enlargement = 1,
                 bool perspective = true) {
    draw::Image image({window.width * enlargement, window.height * enlargement}, background);
    overlay.LayOver(image, fromAbove(perspective), style, window);
    return image;
}

/// Around all pixels in which a channel is bright, in pixels of the window.
struct Bounds {
    Bounds(const draw::Image& image, std::uint8_t draw::Colour::*channel) {
        const double factor = static_cast<double>(window.height) / image.Size().height;
        for (int row = 0; row < image.Size().height; ++row)
            for (int column = 0; column < image.Size().width; ++column)
                if (image[image.Size().Pixel(column, row)].*channel > 127) {
                    ++count;
                    low = glm::min(low, glm::dvec2(column, row) * factor);
                    high = glm::max(high, glm::dvec2(column + 1, row + 1) * factor);
                }
    }
    int count = 0;
    glm::dvec2 low{1e9, 1e9}, high{-1.0, -1.0};
};

TEST(OverlayTest, StaysWhereItIsInALargerPicture) {
    Overlay overlay;
    overlay.unit = "m";
    overlay.shapes.lines = {{ground, ground + glm::dvec3(10.0, 5.0, 0.0), red, 3.0F}};
    overlay.shapes.marks = {{ground - glm::dvec3(8.0, 0.0, 0.0), green}};
    overlay.shapes.labels = {{ground + glm::dvec3(-8.0, -10.0, 0.0), "Label 7", blue}};
    const draw::Image one = laid(overlay, plain());
    const draw::Image four = laid(overlay, plain(), 4);
    for (const auto channel : {&draw::Colour::red, &draw::Colour::green, &draw::Colour::blue}) {
        const Bounds a(one, channel), b(four, channel);
        EXPECT_LT(glm::distance(a.low, b.low), 1.5);
        EXPECT_LT(glm::distance(a.high, b.high), 1.5);
        EXPECT_NEAR(b.count / 16.0, a.count, 0.4 * a.count);
    }
    const Bounds line(one, &draw::Colour::red);
    EXPECT_LT(glm::distance(line.low, glm::dvec2(200.0, 100.0)), 3.0);
    EXPECT_LT(glm::distance(line.high, glm::dvec2(300.0, 150.0)), 3.0);
    // A label does not leave the picture.
    const int whole = Bounds(one, &draw::Colour::blue).count;
    overlay.shapes = {};
    overlay.shapes.labels = {{ground + glm::dvec3(19.0, 14.0, 0.0), "Label 7", blue}};
    EXPECT_NEAR(Bounds(laid(overlay, plain()), &draw::Colour::blue).count, whole, 0.1 * whole);
}

TEST(OverlayTest, LinesEndAtTheEye) {
    Overlay overlay;
    // It comes towards the eye, passes it on the right and goes on behind it.
    overlay.shapes.lines = {{ground, ground + glm::dvec3(10.0, 0.0, 300.0), red, 2.0F}};
    const Bounds seen(laid(overlay, plain()), &draw::Colour::red);
    EXPECT_NEAR(seen.low.x, 199.0, 2.0);
    EXPECT_EQ(seen.high.x, 400.0);
    EXPECT_NEAR(seen.high.y - seen.low.y, 2.0, 1.1);
    // In parallel projection there is no behind.
    const Bounds whole(laid(overlay, plain(), 1, false), &draw::Colour::red);
    EXPECT_NEAR(whole.high.x, 300.0, 2.0);
}

TEST(OverlayTest, IsCalmAboutNumbersWithoutAPlace) {
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    constexpr double infinity = std::numeric_limits<double>::infinity();
    Overlay overlay;
    for (const double bad : {nan, infinity, -1e308, 1e200}) {
        const glm::dvec3 place(bad, ground.y, ground.z);
        overlay.shapes.lines.push_back({place, -place, green, 2.0F});
        overlay.shapes.lines.push_back({ground + glm::dvec3(0.0, 0.0, 101.0), place, green, 2.0F});
        overlay.shapes.marks.push_back({place, green});
        overlay.shapes.labels.push_back({place, "nowhere", green});
        overlay.shapes.screenLines.push_back({{bad, 0.0}, {bad, bad}, green});
    }
    const draw::Image without = laid(overlay, plain());
    EXPECT_EQ(Bounds(without, &draw::Colour::red).count, 0);
    // A long line is one all the same, and its visible end is where it belongs.
    overlay.shapes.lines = {{ground, ground + glm::dvec3(1e12, 0.0, 0.0), red, 2.0F}};
    const Bounds line(laid(overlay, plain()), &draw::Colour::red);
    EXPECT_NEAR(line.low.x, 199.0, 1.5);
    EXPECT_NEAR(line.low.y, 149.0, 1.5);
    EXPECT_EQ(line.high.x, 400.0);
    draw::Image image(window, background);
    for (const glm::dvec3& eye : {ground, glm::dvec3(nan), glm::dvec3(1e308)}) {
        ViewCamera lost = fromAbove();
        lost.eye = eye;
        overlay.LayOver(image, lost, ViewStyle{}, window);
    }
}

TEST(OverlayTest, LegendsStandSideBySide) {
    draw::ColourRamp::Table reds, greens;
    reds.fill({255, 0, 0});
    greens.fill({0, 255, 0});
    Overlay overlay;
    overlay.legends = {{"", {reds, {0.0, 10.0}}}, {"", {greens, {0.0, 10.0}}}};
    ViewStyle style = plain();
    EXPECT_EQ(Bounds(laid(overlay, style), &draw::Colour::red).count, 0);
    style.legend = true;
    // The digits beside the ramps are light in all channels.
    draw::Image image = laid(overlay, style);
    for (std::size_t i = 0; i < window.Pixels(); ++i)
        if (image[i].blue > 64) image[i] = background;
    const Bounds first(image, &draw::Colour::red), second(image, &draw::Colour::green);
    EXPECT_GT(first.count, 200);
    EXPECT_EQ(first.count, second.count);
    EXPECT_LT(second.high.x, first.low.x);
    EXPECT_EQ(second.high.y, first.high.y);
}

}  // namespace
}  // namespace vpc::viewer
