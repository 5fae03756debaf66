#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <thread>
#include <tuple>

#include <glm/common.hpp>
#include <glm/geometric.hpp>

#include "viewer/drawing/CpuRenderer.h"
#include "viewer/drawing/GlRenderer.h"
#include "viewer/drawing/RendererChoice.h"

namespace vpc::viewer {
namespace {

constexpr draw::ImageSize size{320, 200};
constexpr draw::Colour background{1, 2, 3};
constexpr glm::dvec3 ground{400'000.0, 5'000'000.0, 100.0};

struct Point {
    glm::dvec3 place;
    std::uint32_t colour;
};
using Points = std::vector<Point>;

void give(PointRenderer& renderer, const Points& points, double spacing = 0.5) {
    const std::span<PointVertex> memory = renderer.OpenPoints(points.size());
    ASSERT_EQ(memory.size(), points.size());
    for (std::size_t i = 0; i < points.size(); ++i) {
        const glm::vec3 place(points[i].place - ground);
        memory[i] = {place.x, place.y, place.z, points[i].colour};
    }
    renderer.ClosePoints(points.size(), ground, spacing);
    ASSERT_EQ(renderer.PointCount(), points.size());
}

/// Looks north at the ground's middle, from a little above.
ViewCamera camera(bool perspective, double distance = 40.0, double fieldHeight = 30.0) {
    const glm::dvec3 ahead = glm::normalize(glm::dvec3(0.0, 3.0, -1.0));
    ViewCamera view;
    view.target = ground;
    view.eye = ground - ahead * distance;
    view.up = glm::cross(glm::dvec3(1.0, 0.0, 0.0), ahead);
    view.fieldHeight = fieldHeight;
    view.perspective = perspective;
    return view;
}

ViewStyle style(double pixels, bool shaded = false) {
    ViewStyle result;
    result.sizing = PointSizing::Fixed;
    result.pointSize = pixels;
    result.shaded = shaded;
    result.background = background;
    return result;
}

/// A ball on a plane, and some points in the air.
Points scene() {
    std::mt19937 engine(1);
    std::uniform_real_distribution<double> share(-1.0, 1.0);
    Points points;
    for (int i = 0; i < 20'000; ++i) {
        glm::dvec3 at(share(engine), share(engine), share(engine));
        if (i % 3 == 0) at = glm::vec3(20.0 * at.x, 20.0 * at.y, -5.0);
        if (i % 3 == 1) at = 6.0 * glm::normalize(at);
        if (i % 3 == 2) at *= i % 5 == 2 ? 12.0 : 0.1;
        points.push_back({ground + at, static_cast<std::uint32_t>(engine()) & 0xFFFFFFU});
    }
    return points;
}

draw::Image picture(PointRenderer& renderer, const ViewCamera& view, const ViewStyle& how) {
    renderer.Begin(view, size, how);
    renderer.Draw(0, 1);
    return renderer.Picture();
}

/// How many pixels clearly differ.
int difference(const draw::Image& a, const draw::Image& b) {
    int found = 0;
    for (std::size_t i = 0; i < size.Pixels(); ++i)
        found += std::abs(a[i].red - b[i].red) > 8 || std::abs(a[i].green - b[i].green) > 8 ? 1 : 0;
    return found;
}

/// The pixels of a colour: how many, and the middle of the box around them.
struct Patch {
    Patch(const draw::Image& image, const draw::Colour& colour) {
        glm::ivec2 low(size.width, size.height), high(0, 0);
        for (int row = 0; row < size.height; ++row)
            for (int column = 0; column < size.width; ++column)
                if (image[size.Pixel(column, row)] == colour) {
                    ++count;
                    low = glm::min(low, {column, row});
                    high = glm::max(high, {column + 1, row + 1});
                }
        middle = glm::dvec2(low + high) / 2.0;
    }
    int count = 0;
    glm::dvec2 middle{0.0, 0.0};
};

constexpr std::uint32_t redBits = 0xFF0000, greenBits = 0x00FF00;
constexpr draw::Colour red{255, 0, 0}, green{0, 255, 0};

/// Both renderers, in both projections.
class RendererTest : public testing::TestWithParam<std::tuple<RendererChoice, bool>> {
protected:
    void SetUp() override {
        std::string sentence;
        renderer_ = makeRenderer(std::get<0>(GetParam()), sentence);
        if (sentence.find("No display") != std::string::npos) GTEST_SKIP() << sentence;
        ASSERT_EQ(sentence, "");
    }
    static bool Perspective() { return std::get<1>(GetParam()); }

    std::unique_ptr<PointRenderer> renderer_;
};

TEST_P(RendererTest, DrawsWhatTheProcessorDraws) {
    CpuRenderer reference;
    give(reference, scene());
    give(*renderer_, scene());
    for (const double points : {1.0, 4.0, 11.0}) {
        for (const auto& [shaded, round, sizing] : {std::tuple{false, true, PointSizing::Fixed},
                                                    {true, true, PointSizing::Fixed},
                                                    {true, false, PointSizing::Fixed},
                                                    {true, true, PointSizing::ByDistance}}) {
            ViewStyle how = style(points, shaded);
            how.roundPoints = round;
            how.sizing = sizing;
            if (sizing == PointSizing::ByDistance) how.pointSize *= 0.16;
            const draw::Image wanted = picture(reference, camera(Perspective()), how);
            EXPECT_LT(difference(picture(*renderer_, camera(Perspective()), how), wanted), 300)
                << points << shaded << round << static_cast<int>(sizing);
            EXPECT_GT(difference(wanted, {size, background}), 5'000);
        }
    }
}

TEST_P(RendererTest, DrawsTheSameInSlices) {
    const Points points = scene();
    give(*renderer_, points);
    ViewStyle how = style(5.0, true);
    how.sizing = PointSizing::Automatic;
    const ViewCamera view = camera(Perspective());
    const draw::Image whole = picture(*renderer_, view, how);
    // A large step takes another way through the graphics card.
    for (const std::size_t step : {3U, 300U}) {
        renderer_->Begin(view, size, how);
        for (std::size_t i = step; i-- > 0;) {
            renderer_->Draw(i, step);
            if (i != 1) continue;
            EXPECT_GT(difference(renderer_->Picture(), whole), 20) << "points are missing";
        }
        EXPECT_LT(difference(renderer_->Picture(), whole), 20);
    }
    renderer_->Draw(points.size(), 1);
    EXPECT_LT(difference(renderer_->Picture(), whole), 20) << "no points are at the end";
}

TEST_P(RendererTest, AMillimetreHoldsFarFromTheOrigin) {
    give(*renderer_, {{ground, redBits}, {ground + glm::dvec3(0.001, 0.0, 0.0), greenBits}});
    // The picture is 100 mm high, so a millimetre is two pixels wide. Far eyes are telescopes.
    for (const double distance : {0.2, 50.0, 20'000.0}) {
        const draw::Image image =
            picture(*renderer_, camera(Perspective(), distance, 0.1), style(1.0));
        const Patch a(image, red), b(image, green);
        EXPECT_EQ(a.count + b.count, 2) << distance;
        EXPECT_NEAR(a.middle.x, 160.5, 1.0);
        EXPECT_NEAR(b.middle.x - a.middle.x, 2.0, 0.01);
        EXPECT_EQ(a.middle.y, b.middle.y);
    }
}

TEST_P(RendererTest, TellsThePlaceUnderAPixel) {
    const Point nearer{ground + glm::dvec3(3.0, -2.0, 1.0), redBits};
    const Point farther{ground + glm::dvec3(-6.0, 15.0, 0.0), greenBits};
    give(*renderer_, {farther, nearer});
    const draw::Image image = picture(*renderer_, camera(Perspective()), style(5.0));
    for (const auto& [point, colour] : {std::pair{nearer, red}, {farther, green}}) {
        const Patch patch(image, colour);
        EXPECT_EQ(patch.count, 21);
        const glm::ivec2 middle(patch.middle);
        for (const int beside : {0, 6}) {
            const auto place = renderer_->PlaceAt(middle + glm::ivec2(0, beside));
            ASSERT_TRUE(place.has_value());
            // A pixel is 0.15 wide at the target; the disc ends two of them beside its middle.
            EXPECT_LT(glm::distance(*place, point.place), beside == 0 ? 0.2 : 0.55);
        }
        EXPECT_FALSE(renderer_->PlaceAt(middle + glm::ivec2(0, 7)));
    }
    EXPECT_FALSE(renderer_->PlaceAt({-1'000'000, std::numeric_limits<int>::max() / 2}));
}

TEST_P(RendererTest, KeepsThePlacesOfItsLastPicture) {
    give(*renderer_, {{ground, redBits}});
    const ViewCamera view = camera(Perspective());
    picture(*renderer_, view, style(5.0));
    // Points that reach much nearer to the eye, of which no picture has been made yet.
    give(*renderer_, {{ground, redBits}, {ground - view.Ahead() * 30.0, greenBits}});
    if (GetParam() == std::tuple(RendererChoice::Cpu, false)) {
        renderer_->Begin(view, size, style(5.0));
        const auto place = renderer_->PlaceAt({160, 100});
        ASSERT_TRUE(place.has_value());
        EXPECT_LT(glm::distance(*place, ground), 0.3);
    }
    renderer_->Release();
    draw::Image image({0, 0}, {});
    std::thread([&] {
        image = picture(*renderer_, view, style(5.0));
        renderer_->Release();
    }).join();
    EXPECT_GE(Patch(image, green).count, 21);
    EXPECT_TRUE(renderer_->PlaceAt({160, 100}).has_value());
}

TEST_P(RendererTest, PointsBehindTheEyeAndWithoutAPlaceDoNoHarm) {
    const ViewCamera view = camera(Perspective());
    const glm::dvec3 behind = view.eye - view.Ahead() * 10.0;
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    constexpr double large = 1e38;
    give(*renderer_, {{behind, redBits},
                      {view.eye, 0x0000FF},
                      {view.eye + glm::dvec3(0.0, 1e-7, 0.0), 0x0000FF},
                      {{nan, 0.0, 0.0}, 0x0000FF},
                      {{1e300, 0.0, large}, 0x0000FF},
                      {ground, greenBits}});
    const draw::Image image = picture(*renderer_, view, style(5.0, true));
    // In parallel projection a picture shows all that is in its field, as a plan does. What lies
    // nearer covers the rest.
    EXPECT_EQ(Patch(image, green).count, Perspective() ? 21 : 0);
    EXPECT_EQ(Patch(image, red).count, Perspective() ? 0 : 21);
    for (const glm::dvec3& eye : {ground, glm::dvec3(nan), glm::dvec3(1e300)}) {
        ViewCamera lost = view;
        lost.eye = eye;
        picture(*renderer_, lost, style(64.0, true));
        renderer_->PlaceAt({160, 100});
    }
    EXPECT_EQ(difference(picture(*renderer_, view, style(5.0, true)), image), 0);
}

TEST_P(RendererTest, LacksMemoryWithoutHarm) {
    give(*renderer_, scene());
    EXPECT_TRUE(renderer_->OpenPoints(std::numeric_limits<std::size_t>::max() / 4).empty());
    EXPECT_EQ(renderer_->PointCount(), 0U);
    renderer_->ClosePoints(5, ground, 1.0);
    EXPECT_EQ(renderer_->PointCount(), 0U);
    const ViewCamera view = camera(Perspective());
    const draw::Image empty(size, background);
    EXPECT_EQ(difference(picture(*renderer_, view, style(3.0, true)), empty), 0);
    // Fewer points than there is room for, and none.
    const auto memory = renderer_->OpenPoints(1'000);
    memory[0] = {0.0F, 0.0F, 0.0F, redBits};
    memory[1] = {1.0F, 0.0F, 0.0F, greenBits};
    renderer_->ClosePoints(1, ground, 1.0);
    const draw::Image one = picture(*renderer_, view, style(3.0));
    EXPECT_EQ(Patch(one, red).count, 9);
    EXPECT_EQ(Patch(one, green).count, 0);
    EXPECT_TRUE(renderer_->OpenPoints(0).empty());
    renderer_->ClosePoints(0, ground, 1.0);
    EXPECT_EQ(difference(picture(*renderer_, view, style(3.0)), empty), 0);
}

INSTANTIATE_TEST_SUITE_P(
    Renderers, RendererTest,
    testing::Combine(testing::Values(RendererChoice::Cpu, RendererChoice::Gl), testing::Bool()),
    [](const auto& test) {
        return std::string(std::get<0>(test.param) == RendererChoice::Gl ? "Gl" : "Cpu") +
               (std::get<1>(test.param) ? "Perspective" : "Parallel");
    });

TEST(RendererChoiceTest, TheProcessorStandsInForASoftwareRasteriser) {
    std::string sentence;
    const std::unique_ptr<GlRenderer> gl = GlRenderer::Create(sentence);
    const bool hasCard = gl != nullptr && !gl->IsSoftware();
    const auto chosen = makeRenderer(RendererChoice::Auto, sentence);
    EXPECT_EQ(chosen->Name(), hasCard ? gl->Name() : CpuRenderer().Name());
    EXPECT_EQ(sentence.empty(), gl != nullptr);
}

}  // namespace
}  // namespace vpc::viewer
