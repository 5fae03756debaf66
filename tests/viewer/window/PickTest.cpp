#include "viewer/window/WindowTest.h"

namespace vpc::test {
namespace {

class PickTest : public WindowTest {
protected:
    static std::string joined(const glm::dvec3& v) {
        return nlohmann::json(v.x).dump() + "," + nlohmann::json(v.y).dump() + "," +
               nlohmann::json(v.z).dump();
    }
    /// What the program picks at a pixel of the viewer's view.
    nlohmann::json pick(const ViewerRun& viewer, const Pixel& pixel) const {
        const auto camera = viewer.Camera();
        const auto size = viewer.Size();
        const auto pair = [](auto a, const char* between, auto b) {
            return nlohmann::json(a).dump() + between + nlohmann::json(b).dump();
        };
        const auto result =
            run("pick t.vpt --json --eye " + joined(camera.eye) + " --target " +
                joined(camera.target) + " --up " + joined(camera.up) + " --field " +
                pair(camera.FieldWidth(size), ",", camera.fieldHeight) + " --size " +
                pair(size.width, "x", size.height) + " --pixel " + pair(pixel.x, ",", pixel.y));
        EXPECT_EQ(result.status, 0) << result.err;
        return nlohmann::json::parse(result.out);
    }
};

TEST_F(PickTest, PicksAndMeasuresTheFilesOwnPoints) {
    ViewerRun viewer = start("t.vpt");
    ASSERT_EQ(viewer.Last()["entities"][0]["location"], nlohmann::json({0.0, 0.0, 0.0}));
    viewer.ClickControl("tool/pick");
    std::vector<glm::dvec3> places;
    for (const int number : {0, 3}) {
        const auto [middle, colour] = square(number);
        viewer.Click(viewer.PixelOf(middle));
        const auto picks = viewer.Report()["picks"];
        ASSERT_EQ(picks.size(), places.size() + 1);
        const auto wanted = pick(viewer, viewer.PixelOf(middle));
        EXPECT_EQ(picks.back()["place"], wanted["point"]);
        EXPECT_EQ(picks.back()["colour"], wanted["colour"]);
        EXPECT_EQ(picks.back()["colour"], nlohmann::json({colour.red, colour.green, colour.blue}));
        EXPECT_EQ(picks.back()["entity"], viewer.Last()["entities"][0]["id"]);
        places.push_back(vectorOf(wanted["point"]));
    }
    const auto& measure = viewer.Last()["measure"];
    EXPECT_DOUBLE_EQ(measure["distance"], glm::length(places[1] - places[0]));
    EXPECT_DOUBLE_EQ(measure["dz"], 6.0);
    viewer.Close();
}

}  // namespace
}  // namespace vpc::test
