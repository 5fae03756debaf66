#pragma once

#include <array>
#include <cmath>
#include <string>
#include <vector>

#include <glm/geometric.hpp>

#include "support/ProgramRun.h"
#include "support/ScanFiles.h"
#include "viewer/document/Placement.h"
#include "viewer/window/ViewerRun.h"
#include "viewer/window/XvfbServer.h"

namespace vpc::test {

using testing::HasSubstr;
using testing::Not;
using testing::SizeIs;

/// The viewer over "t.vpt": four squares side by side, each of one colour and at a height of its
/// own, where eastings and northings have six and seven digits.
class WindowTest : public ProgramTest {
protected:
    static constexpr int pointsASide = 160;
    static constexpr std::size_t pointsASquare = pointsASide * pointsASide;
    static constexpr std::size_t allPoints = 4 * pointsASquare;
    static constexpr double step = 0.25;
    static constexpr double side = pointsASide * step;

    struct Square {
        /// A point of the square, about in its middle.
        glm::dvec3 middle;
        draw::Colour colour;
    };
    static Square square(int number) {
        static constexpr std::array<draw::Colour, 4> colours{
            {{230, 40, 40}, {40, 200, 60}, {50, 80, 230}, {230, 210, 40}}};
        const int column = number % 2, row = number / 2;
        return {{500'000.125 + side * (column + 0.5), 4'100'000.125 + side * (row + 0.5),
                 100.0 + 2.0 * number},
                colours[static_cast<std::size_t>(number)]};
    }

    static std::vector<PointRecord> scene() {
        std::vector<PointRecord> points;
        for (int number = 0; number < 4; ++number)
            for (int i = 0; i < static_cast<int>(pointsASquare); ++i) {
                const auto [middle, c] = square(number);
                points.push_back({middle.x + step * (i % pointsASide - pointsASide / 2),
                                  middle.y + step * (i / pointsASide - pointsASide / 2), middle.z,
                                  c.red, c.green, c.blue, 10.0 * number});
            }
        return points;
    }
    /// Writes the scene as NAME.las and prepares NAME.vpt.
    void makeScene(const std::string& name) const {
        writeLas(folder.file(name + ".las"), {2, 3, 0, 0.001, 2e6}, scene());
        expectDone("prepare --quiet -o " + name + ".vpt " + name + ".las");
    }
    WindowTest() { makeScene("t"); }

    ViewerRun start(const std::string& arguments,
                    const ViewerRun::Environment& environment = {}) const {
        static const XvfbServer server;
        return ViewerRun(server.Display(), folder.path(), arguments, environment);
    }
    static glm::dvec3 vectorOf(const nlohmann::json& numbers) {
        return {numbers.at(0), numbers.at(1), numbers.at(2)};
    }
    /// Where an entity of a report has a point of its file.
    static glm::dvec3 placed(const nlohmann::json& entity, const glm::dvec3& point) {
        const viewer::Placement placement{vectorOf(entity.at("location")), entity.at("rotation"),
                                          entity.at("scale")};
        return placement.ToDrawing(point);
    }
    /// Whether a square of an entity is seen where it belongs, in its colour.
    static bool showsSquare(const ViewerRun& viewer, const draw::Image& picture,
                            const nlohmann::json& entity, int number) {
        const auto [middle, colour] = square(number);
        const draw::ImageSize& size = picture.Size();
        const Pixel pixel = viewer.PixelOf(placed(entity, middle), size);
        if (pixel.x < 0 || pixel.y < 0 || pixel.x >= size.width || pixel.y >= size.height)
            return false;
        const auto& seen = picture[size.Pixel(pixel.x, pixel.y)];
        // Shading may darken it.
        const glm::dvec3 a(seen.red, seen.green, seen.blue);
        const glm::dvec3 b(colour.red, colour.green, colour.blue);
        return glm::dot(a, b) > 0.98 * glm::length(a) * glm::length(b);
    }
    /// The same for all squares of all entities in the last report.
    static bool showsAllSquares(const ViewerRun& viewer, const draw::Image& picture) {
        for (const auto& entity : viewer.Last().at("entities"))
            for (int number = 0; number < 4; ++number)
                if (!showsSquare(viewer, picture, entity, number)) return false;
        return true;
    }
    /// The same as soon as the window shows it.
    static bool comesToShowSquares(const ViewerRun& viewer) {
        const auto shows = [&](const auto& picture) { return showsAllSquares(viewer, picture); };
        return shows(viewer.PictureWhen(shows));
    }
    static bool comesToShow(const ViewerRun& viewer, const draw::Image& wanted) {
        const auto isWanted = [&](const draw::Image& p) { return difference(p, wanted) < 0.01; };
        return isWanted(viewer.PictureWhen(isWanted));
    }
};

}  // namespace vpc::test
