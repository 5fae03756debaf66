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

    /// Writes the squares as NAME.las and prepares NAME.vpt.
    void makeScene(const std::string& name) const {
        std::vector<PointRecord> points;
        for (int number = 0; number < 4; ++number)
            for (int i = 0; i < static_cast<int>(pointsASquare); ++i) {
                const auto [middle, c] = square(number);
                points.push_back({middle.x + step * (i % pointsASide - pointsASide / 2),
                                  middle.y + step * (i / pointsASide - pointsASide / 2), middle.z,
                                  c.red, c.green, c.blue, 10.0 * number});
            }
        writeLas(folder.file(name + ".las"), {2, 3, 0, 0.001, 2e6}, points);
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
    /// Whether the squares of an entity are seen where they belong, in their colours.
    static bool showsSquares(const ViewerRun& viewer, const draw::Image& picture,
                             const nlohmann::json& entity) {
        for (int number = 0; number < 4; ++number) {
            const auto [middle, colour] = square(number);
            const Pixel pixel = viewer.PixelOf(placed(entity, middle));
            if (pixel.x < 0 || pixel.y < 0 || pixel.x >= picture.Size().width ||
                pixel.y >= picture.Size().height)
                return false;
            const auto& seen = picture[picture.Size().Pixel(pixel.x, pixel.y)];
            // Shading may darken it.
            const glm::dvec3 a(seen.red, seen.green, seen.blue);
            const glm::dvec3 b(colour.red, colour.green, colour.blue);
            if (!(glm::dot(a, b) > 0.98 * glm::length(a) * glm::length(b))) return false;
        }
        return true;
    }
    /// The same for all entities of the last report, as soon as the window shows it.
    static bool comesToShowSquares(const ViewerRun& viewer) {
        const auto shows = [&](const draw::Image& picture) {
            const auto& entities = viewer.Last().at("entities");
            return std::all_of(entities.begin(), entities.end(), [&](const auto& entity) {
                return showsSquares(viewer, picture, entity);
            });
        };
        return shows(viewer.PictureWhen(shows));
    }
    static bool comesToShow(const ViewerRun& viewer, const draw::Image& wanted) {
        const auto isWanted = [&](const draw::Image& p) { return difference(p, wanted) < 0.01; };
        return isWanted(viewer.PictureWhen(isWanted));
    }
};

}  // namespace vpc::test
