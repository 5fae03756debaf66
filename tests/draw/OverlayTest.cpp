#include <gtest/gtest.h>

#include <limits>

#include "draw/Ink.h"
#include "draw/Legend.h"
#include "draw/RoundNumber.h"
#include "draw/ScaleBar.h"

namespace vpc::draw {
namespace {

constexpr ImageSize size{800, 600};
constexpr Colour background{10, 20, 30};

ColourRamp blueToRed(double min, double max) {
    ColourRamp::Table table;
    for (std::size_t i = 0; i < table.size(); ++i)
        table[i] = {static_cast<std::uint8_t>(i), 0, static_cast<std::uint8_t>(255 - i)};
    return {table, {min, max}};
}

TEST(OverlayTest, ALegendHasTheRampAndNothingElseIsTouched) {
    Image image(size, background);
    drawLegend(image, blueToRed(100, 200), "Elevation (m)", OverlayStyle(size, background));
    std::size_t red = 0, blue = 0, beside = 0;
    for (int row = 0; row < size.height; ++row) {
        for (int column = 0; column < size.width; ++column) {
            const Colour& colour = image[size.Pixel(column, row)];
            if (colour.red > 250 && colour.blue < 5) red = size.Pixel(column, row);
            if (colour.blue > 250 && colour.red < 5 && blue == 0) blue = size.Pixel(column, row);
            if (colour != background && (column < 500 || row < 300)) ++beside;
        }
    }
    EXPECT_GT(red, 0U);
    EXPECT_GT(blue, red) << "the largest value is on top";
    EXPECT_EQ(beside, 0U);
    // Ranges that have no length, and pictures that have no room, are drawn without harm.
    for (const double max : {100.0, 1e300, std::numeric_limits<double>::infinity()})
        drawLegend(image, blueToRed(100, max), "Intensity", OverlayStyle(size, background));
    Image tiny({20, 10}, background);
    drawLegend(tiny, blueToRed(0, 1), "Intensity", OverlayStyle(tiny.Size(), background));
}

TEST(OverlayTest, AScaleBarIsAsLongAsItSays) {
    // 800 pixels show 160 m, so the largest round length in a fifth of the width is 20 m.
    Camera camera;
    camera.fieldWidth = 160;
    camera.fieldHeight = 100;
    camera.perspective = false;
    Image image(size, background);
    drawScaleBar(image, {camera, size}, "m", OverlayStyle(size, background));
    int longest = 0;
    for (int row = 0; row < size.height; ++row) {
        int length = 0;
        for (int column = 0; column < size.width; ++column) {
            length = image[size.Pixel(column, row)] == background ? 0 : length + 1;
            longest = std::max(longest, length);
        }
    }
    EXPECT_NEAR(longest, 100, 3);
}

TEST(OverlayTest, NumbersAreRoundAndHaveTheDecimalsTheyNeed) {
    const auto above = [](double limit) {
        const RoundNumber number = RoundNumber::NotBelow(limit);
        return number.Text(number.Value());
    };
    const auto below = [](double limit) {
        const RoundNumber number = RoundNumber::NotAbove(limit);
        return number.Text(number.Value());
    };
    EXPECT_EQ(above(0.3), "0.5");
    EXPECT_EQ(above(0.5), "0.5");
    EXPECT_EQ(above(51), "100");
    EXPECT_EQ(below(4.9), "2");
    EXPECT_EQ(below(1000), "1000");
    EXPECT_EQ(below(0.00099), "0.0005");
    EXPECT_EQ(RoundNumber::NotBelow(0.05).Text(-0.1499999), "-0.15");
    EXPECT_EQ(RoundNumber::NotBelow(5).Text(-1e-9), "0");
    EXPECT_EQ(below(1e200), "1e+200");
    EXPECT_GT(Ink::TextWidth("-12.50 km", 12), Ink::TextWidth("12.50", 12));
}

TEST(OverlayTest, RangesLeaveStraysOutAndRampsStopAtTheirEnds) {
    std::vector<double> values = {-1e9, 1e9, std::numeric_limits<double>::quiet_NaN()};
    for (int i = 0; i < 998; ++i) values.push_back(i % 500);
    const ValueRange range = ValueRange::WithoutStrays(values);
    EXPECT_NEAR(range.min, 4, 1);
    EXPECT_NEAR(range.max, 495, 1);
    const ColourRamp ramp = blueToRed(0, 10);
    EXPECT_EQ(ramp.Of(-5), (Colour{0, 0, 255}));
    EXPECT_EQ(ramp.Of(1e300), (Colour{255, 0, 0}));
    EXPECT_EQ(ramp.Of(std::numeric_limits<double>::quiet_NaN()), blueToRed(3, 3).Of(7));
}

}  // namespace
}  // namespace vpc::draw
