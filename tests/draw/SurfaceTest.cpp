#include "draw/Surface.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <random>
#include <tuple>

#include "draw/EyeDomeShading.h"

namespace vpc::draw {
namespace {

using Points = std::vector<Point3>;

/// A camera that looks down from 100 above a place of large coordinates; at the ground the picture
/// of 200 by 200 pixels is 100 wide.
class SurfaceTest : public testing::TestWithParam<bool> {
protected:
    static Projection fromAbove(bool perspective, double height = 100.0, int pixels = 200) {
        Camera camera;
        camera.eye = ground + Point3{0, 0, height};
        camera.targetDistance = height;
        camera.fieldWidth = camera.fieldHeight = height;
        camera.perspective = perspective;
        return {camera, {pixels, pixels}};
    }
    static DepthBuffer bufferOf(const Projection& projection, const Points& points) {
        DepthBuffer buffer(projection.Size());
        if (!points.empty()) buffer.Add(projection, &points[0].x, points.size(), 0);
        return buffer;
    }
    /// Random points of a plane of 60 by 60 above the ground's middle, whose height grows with x.
    static Points plane(std::size_t count, double height, double slope) {
        std::mt19937 engine(1);
        std::uniform_real_distribution<double> place(-30.0, 30.0);
        Points points;
        while (points.size() < count) {
            const double x = place(engine), y = place(engine);
            points.push_back(ground + Point3{x, y, height + slope * x});
        }
        return points;
    }
    /// How far beyond the rim of such a plane the line of sight through a place meets it.
    static double outside(const Projection& view, Projection::Place place, double slope) {
        // The line is a straight one, so two of its points tell where it meets the plane.
        const auto below = [&](double depth) {
            place.depth = depth;
            const Point3 at = view.At(place) - ground;
            return std::pair(at, slope * at.x - at.z);
        };
        const auto [a, underA] = below(1.0);
        const auto [b, underB] = below(2.0);
        const double depth = 1.0 + underA / (underA - underB);
        if (!(depth > 0.1)) return 1e9;
        const Point3 at = below(depth).first;
        return std::max(std::abs(at.x), std::abs(at.y)) - 30.0;
    }
    static std::uint32_t seenAt(const Surface& surface, int column, int row) {
        return surface.PointIndex(surface.Size().Pixel(column, row));
    }

    static constexpr Point3 ground{5'400'000.0, 3'700'000.0, 1000.0};
    static constexpr std::uint32_t none = DepthBuffer::noPoint;
};

TEST_P(SurfaceTest, ShowsTheNearestPointOfEveryPixel) {
    const Projection view = fromAbove(GetParam());
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    constexpr double infinity = std::numeric_limits<double>::infinity();
    // A pixel is 0.5 wide at the ground. The first two share one, the third is 2 mm beside it; the
    // others cannot be seen.
    const Points points = {ground + Point3{0.001, 0.499, 0},  ground + Point3{0.001, 0.49, 1},
                           ground + Point3{-0.001, 0.499, 0}, ground + Point3{0, 0, 100},
                           ground + Point3{0, 0, 101},        ground + Point3{300, 0, 0},
                           ground + Point3{nan, 0, 0},        ground + Point3{0, infinity, 0}};
    const Surface surface(bufferOf(view, points), view, {1.0});
    std::size_t covered = 0;
    for (std::size_t pixel = 0; pixel < surface.Size().Pixels(); ++pixel)
        covered += surface.IsCovered(pixel) ? 1 : 0;
    EXPECT_EQ(covered, 2U);
    EXPECT_EQ(seenAt(surface, 100, 99), 1U);
    EXPECT_EQ(seenAt(surface, 99, 99), 2U);
    EXPECT_FLOAT_EQ(surface.Depth(surface.Size().Pixel(100, 99)), 99.0F);
    // A disc of 5 pixels is a square without its corners; the nearer one lies on top.
    const Surface large(bufferOf(view, points), view, {5.0});
    EXPECT_EQ(seenAt(large, 102, 100), 1U);
    EXPECT_EQ(seenAt(large, 98, 99), 1U) << "nearer by more than the disc falls back";
    EXPECT_EQ(seenAt(large, 97, 98), 2U);
    EXPECT_EQ(seenAt(large, 97, 97), none);
}

TEST_P(SurfaceTest, IsTheSameFromSlicesInAnyOrder) {
    const Projection view = fromAbove(GetParam());
    const Points points = plane(20'000, 10.0, 0.5);
    const DepthBuffer whole = bufferOf(view, points);
    DepthBuffer slices(view.Size());
    slices.Add(view, &points[7].x, 1, 7);
    slices.Clear();
    for (const auto& [first, count] :
         {std::tuple{15'001U, 4'999U}, {0U, 1'001U}, {1'001U, 14'000U}})
        slices.Add(view, &points[first].x, count, first);
    const Surface a(whole, view, {}), b(slices, view, {});
    for (std::size_t pixel = 0; pixel < a.Size().Pixels(); ++pixel)
        ASSERT_EQ(a.PointIndex(pixel), b.PointIndex(pixel)) << pixel;
}

TEST_P(SurfaceTest, IsTheSameFromFloatsAndFromAFarEye) {
    Points points = plane(20'000, 10.0, 0.5);
    struct Vertex {
        std::array<float, 3> xyz;
        std::uint32_t number;
    };
    std::vector<Vertex> vertices;
    for (const Point3& point : points) {
        const Point3 p = point - ground;
        vertices.push_back(
            {{static_cast<float>(p.x), static_cast<float>(p.y), static_cast<float>(p.z)},
             static_cast<std::uint32_t>(3 * vertices.size())});
    }
    const Projection view = fromAbove(GetParam());
    DepthBuffer floats(view.Size());
    for (const std::size_t first : {2U, 0U, 1U})
        floats.Add(
            view,
            {vertices[0].xyz.data(), &vertices[0].number, sizeof(Vertex), vertices.size(), ground},
            first, 3);
    const Surface a(bufferOf(view, points), view, {3.0}), b(floats, view, {3.0});
    int differences = 0;
    for (std::size_t pixel = 0; pixel < a.Size().Pixels(); ++pixel)
        differences += a.IsCovered(pixel) && 3 * a.PointIndex(pixel) != b.PointIndex(pixel) ? 1 : 0;
    EXPECT_LT(differences, 100) << "only where a point is at the edge of a pixel";

    // From 100 km above, a pixel is 1 mm wide, and two points are 4 of them apart.
    Camera far = view.GetCamera();
    far.eye = ground + Point3{0, 0, far.targetDistance = 100'000.0};
    far.fieldWidth = far.fieldHeight = 0.2;
    const Projection telescope(far, view.Size());
    points = {ground + Point3{0.0005, 0.0005, 0}, ground + Point3{0.0045, 0.0005, 0}};
    const Surface two(bufferOf(telescope, points), telescope, {1.0});
    EXPECT_EQ(seenAt(two, 100, 99), 0U);
    EXPECT_EQ(seenAt(two, 104, 99), 1U);
}

TEST_P(SurfaceTest, DrawsSquaresAndSizesOfTheWorld) {
    const Projection view = fromAbove(GetParam());
    // A pixel is 0.5 wide at the ground. The second point is at half the distance.
    const Points points = {ground + Point3{0.1, 0.1, 0}, ground + Point3{20.1, 0.1, 50}};
    const auto pixelsOf = [&](const PointSize& size, std::uint32_t point) {
        const Surface surface(bufferOf(view, points), view, size);
        int found = 0;
        for (std::size_t pixel = 0; pixel < surface.Size().Pixels(); ++pixel)
            found += surface.PointIndex(pixel) == point ? 1 : 0;
        return found;
    };
    for (const double side : {1.0, 2.0, 3.0, 6.0}) {
        EXPECT_EQ(pixelsOf({side, false, true}, 0), side * side);
        EXPECT_EQ(pixelsOf({side / 2, true, true}, 0), side * side);
        const double nearer = GetParam() ? 2.0 * side : side;
        EXPECT_EQ(pixelsOf({side / 2, true, true}, 1), nearer * nearer);
    }
    EXPECT_EQ(pixelsOf({5.0}, 0), 21);
}

/// Dense and thin clouds, from near and far, and inclined up to 45 degrees, before a denser one.
TEST_P(SurfaceTest, ClosesAPlaneWithoutLettingItGrow) {
    constexpr int pixels = 600;
    const Points behind = plane(100'000, -70.0, 0.0);
    for (const std::size_t count : {2'000U, 20'000U, 200'000U}) {
        const double spacing = std::sqrt(3600.0 / static_cast<double>(count));
        for (const double slope : {0.0, 0.5, 1.0}) {
            Points points = plane(count, 0.0, slope);
            points.insert(points.end(), behind.begin(), behind.end());
            for (const double height : {80.0, 150.0, 400.0}) {
                const Projection view = fromAbove(GetParam(), height, pixels);
                const Surface surface(bufferOf(view, points), view, {});
                int inner = 0, closed = 0, grown = 0;
                for (int row = 3; row < pixels; row += 7) {
                    for (int column = 3; column < pixels; column += 7) {
                        const double out = outside(view, {column + 0.5, row + 0.5}, slope);
                        const bool isPlane = seenAt(surface, column, row) < count;
                        inner += out < -1.5 * spacing ? 1 : 0;
                        closed += out < -1.5 * spacing && isPlane ? 1 : 0;
                        const double pixel = view.PixelSide(height + 30.0 * slope);
                        grown += out > 3.0 * spacing + 3.0 * pixel && isPlane ? 1 : 0;
                    }
                }
                const std::string what = std::to_string(count) + " points from " +
                                         std::to_string(height) + ", slope " +
                                         std::to_string(slope);
                EXPECT_GT(inner, 50) << what;
                EXPECT_GT(closed, 0.99 * inner) << what;
                EXPECT_EQ(grown, 0) << what;
            }
        }
    }
}

TEST_P(SurfaceTest, ShadingDarkensBehindAStepAndNowhereOnAPlane) {
    const Projection view = fromAbove(GetParam());
    // A terrace whose western half is 8 higher; both halves are inclined.
    Points points;
    for (int i = -400; i < 400; ++i)
        for (int j = -400; j < 400; ++j) {
            const double x = 0.1 * i, y = 0.1 * j;
            points.push_back(ground + Point3{x, y, 0.6 * y + (x < 0.0 ? 8.0 : 0.0)});
        }
    const Surface surface(bufferOf(view, points), view, {});
    const std::vector<float> brightness = eyeDomeShading(surface, view);
    const auto at = [&](int column) { return brightness[view.Size().Pixel(column, 100)]; };
    // In perspective the higher half covers a little of the lower one.
    int step = 90;
    while (surface.Depth(view.Size().Pixel(step, 100)) < 96.0F) ++step;
    EXPECT_LT(at(step), 0.75F);
    for (const int away : {-30, -10, 10, 30}) EXPECT_GT(at(step + away), 0.9F) << away;
    EXPECT_GT(at(step - 1), 0.9F) << "the near side of the step is bright";
    EXPECT_EQ(brightness[0], 1.0F) << "nothing is there";
}

INSTANTIATE_TEST_SUITE_P(Projections, SurfaceTest, testing::Bool(), [](const auto& projection) {
    return projection.param ? "Perspective" : "Parallel";
});

}  // namespace
}  // namespace vpc::draw
