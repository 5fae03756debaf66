#include <cmath>
#include <nlohmann/json.hpp>

#include "viewer/engine/EngineFixture.h"
#include "viewer/engine/Plugin.h"

namespace vpc::viewer::test {
namespace {

using testing::HasSubstr;

glm::dvec3 placeOf(const PointVertex& vertex, const ViewResult& view) {
    return view.origin + glm::dvec3(vertex.x, vertex.y, vertex.z);
}

TEST_F(EngineTest, GivesThePointsOfThePlugin) {
    const Engine::Opened opened = Show(MakeTree(30000));
    EXPECT_EQ(opened.points, 30000U);
    EXPECT_EQ(opened.unit, "Meters");
    EXPECT_EQ(opened.entity.name, "m30000");
    const ViewResult view = Update();
    EXPECT_EQ(view.inAll, 30000U);
    EXPECT_EQ(view.entities[0].problem, "");
    EXPECT_LT(view.entities[0].level, view.entities[0].levels);
    // About ten points a square metre.
    EXPECT_NEAR(view.spacing, 0.32, 0.16);
    const auto points = Fetch(view);
    calls.RunUntil([this] { return !engine->IsBusy(); });

    // The engine's thread waits, so the plug-in may be called from here.
    const Plugin plugin(VPC_PLUGIN);
    const Plugin::PointSet set = plugin.Load(opened.entity.file);
    const ViewCamera& camera = request.camera;
    set->updateVisiblePoints({}, {camera.eye.x, camera.eye.y, camera.eye.z},
                             {camera.target.x, camera.target.y, camera.target.z},
                             {camera.up.x, camera.up.y, camera.up.z},
                             camera.FieldWidth(request.size), camera.fieldHeight,
                             request.size.width, request.size.height, true);
    ASSERT_EQ(set->getNrVisiblePoints(), points.size());
    for (std::size_t i = 0; i < points.size(); ++i) {
        const OdGePoint3d& p = set->getPointCoordinates()[i];
        ASSERT_EQ(points[i].x, static_cast<float>(p.x - view.origin.x));
        ASSERT_EQ(points[i].y, static_cast<float>(p.y - view.origin.y));
        ASSERT_EQ(points[i].z, static_cast<float>(p.z - view.origin.z));
        ASSERT_EQ(points[i].colour, set->getPointColors()[i].color() & 0xFFFFFFU);
    }
}

TEST_F(EngineTest, PlacedPointsAreTheSameOnesElsewhere) {
    Show(MakeTree(30000));
    const std::vector<glm::ivec2> pixels = {{400, 300}, {300, 310}, {450, 250}, {380, 330}};
    const ViewResult plain = Update();
    const auto plainPoints = Fetch(plain);
    std::vector<std::optional<Pick>> plainPicks;
    for (const auto& pixel : pixels) plainPicks.push_back(PickAt(pixel));

    const Placement placement{{12000.0, -34000.0, 56.0}, 0.7, 3.2808};
    Entities()[0].placement = placement;
    ViewCamera& camera = request.camera;
    camera = {placement.ToDrawing(camera.eye), placement.ToDrawing(camera.target),
              placement.DirectionToDrawing(camera.up), camera.fieldHeight * placement.scale, true};
    const ViewResult moved = Update();
    const auto movedPoints = Fetch(moved);
    ASSERT_EQ(movedPoints.size(), plainPoints.size());
    for (std::size_t i = 0; i < movedPoints.size(); ++i) {
        const glm::dvec3 expected = placement.ToDrawing(placeOf(plainPoints[i], plain));
        ASSERT_LT(glm::distance(placeOf(movedPoints[i], moved), expected), 1e-3);
        ASSERT_EQ(movedPoints[i].colour, plainPoints[i].colour);
    }
    int picked = 0;
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        const auto pick = PickAt(pixels[i]);
        ASSERT_EQ(pick.has_value(), plainPicks[i].has_value());
        if (!pick) continue;
        ++picked;
        const glm::dvec3 expected = placement.ToDrawing(plainPicks[i]->place);
        EXPECT_LT(glm::distance(pick->place, expected), 1e-9 * glm::length(expected));
    }
    EXPECT_GT(picked, 1);
}

TEST_F(EngineTest, APickIsThatOfTheProgram) {
    const Engine::Opened opened = Show(MakeTree(30000));
    Update();
    const ViewCamera& camera = request.camera;
    const auto list = [](const std::vector<double>& numbers) {
        const std::string json = nlohmann::json(numbers).dump();
        return json.substr(1, json.size() - 2);
    };
    const auto text = [&list](const glm::dvec3& v) { return list({v.x, v.y, v.z}); };
    for (const glm::ivec2 pixel : {glm::ivec2(400, 300), glm::ivec2(350, 333)}) {
        const auto pick = PickAt(pixel);
        ASSERT_TRUE(pick);
        const auto said = nlohmann::json::parse(
            RunProgram("pick --json " + opened.entity.file + " --eye " + text(camera.eye) +
                       " --target " + text(camera.target) + " --up " + text(camera.up) +
                       " --field " + list({camera.FieldWidth(request.size), camera.fieldHeight}) +
                       " --viewport 800,600 --pixel " + std::to_string(pixel.x) + "," +
                       std::to_string(pixel.y)));
        EXPECT_EQ(said["point"], nlohmann::json({pick->place.x, pick->place.y, pick->place.z}));
        EXPECT_EQ(said["colour"],
                  nlohmann::json({pick->colour.red, pick->colour.green, pick->colour.blue}));
        EXPECT_EQ(pick->entity, 1);
    }
}

TEST_F(EngineTest, ACameraWithinACloudSeesItsEdge) {
    const Engine::Opened opened = Show(MakeTree(30000));
    const Box& box = opened.box;
    ViewCamera& camera = request.camera;
    camera.up = {0, 0, 1};
    camera.fieldHeight = 1.0;
    for (const double turn : {0.0, 2.0}) {
        Entities()[0].placement.rotation = turn;
        const glm::dvec3 centre = Entities()[0].placement.ToDrawing(box.Centre());
        camera.eye = centre + glm::dvec3(0.1, 0.1, 3.0);
        camera.target = camera.eye + glm::dvec3(1, 0, 0);
        const ViewResult view = Update();
        double farthest = 0.0;
        for (const PointVertex& vertex : Fetch(view))
            farthest = std::max(farthest, placeOf(vertex, view).x - camera.eye.x);
        // The box is a twentieth larger than the points.
        EXPECT_GT(farthest, 0.45 * (box.max.x - box.min.x));
        // What is picked is what one sees there.
        const auto projection = camera.ProjectionTo(request.size);
        int picked = 0;
        for (int row = 100; row < 600; row += 10) {
            const auto pick = PickAt({400 + row / 5, row});
            if (!pick) continue;
            const auto seen = projection.Of({pick->place.x, pick->place.y, pick->place.z});
            EXPECT_NEAR(seen.column, 400.5 + row / 5, 2.6);
            EXPECT_NEAR(seen.row, row + 0.5, 2.6);
            ++picked;
        }
        EXPECT_GT(picked, 0);
    }
    // A parallel view has no eye to be behind of.
    camera.perspective = false;
    camera.fieldHeight = 2.0 * box.Diagonal();
    EXPECT_EQ(CountShown(), 30000U);
}

TEST_F(EngineTest, SectionsAndClipsKeepTheirSide) {
    const Engine::Opened opened = Show(MakeTree(30000));
    const Placement placement{{12000.0, -34000.0, 56.0}, 0.7, 3.2808};
    Entities()[0].placement = placement;
    request.camera.target = placement.ToDrawing(opened.box.Centre());
    request.camera.eye = request.camera.target + glm::dvec3(0.0, 0.0, 1e4);
    request.camera.up = {0, 1, 0};
    request.camera.fieldHeight = 1e4;
    const auto all = CountShown();
    ASSERT_EQ(all, 30000U);
    const glm::dvec3 middle = request.camera.target;
    Drawing& drawing = request.drawing;
    // How many are kept by a test that every one of them has to pass.
    const auto kept = [this](const auto& passes) {
        const ViewResult view = Update();
        for (const PointVertex& vertex : Fetch(view)) EXPECT_TRUE(passes(placeOf(vertex, view)));
        return view.shown;
    };

    const glm::dvec3 normal = glm::normalize(glm::dvec3(1.0, 2.0, 0.5));
    drawing.sections = {{"", middle, normal, true}};
    const auto before = [&](double side) {
        return
            [&, side](const glm::dvec3& p) { return side * glm::dot(p - middle, normal) > -1e-2; };
    };
    const auto ahead = kept(before(1.0));
    drawing.sections[0].normal = -normal;
    EXPECT_EQ(kept(before(-1.0)), all - ahead);
    EXPECT_GT(ahead, all / 5);
    EXPECT_LT(ahead, all * 4 / 5);
    // Moved along, the entity is cut elsewhere.
    Entities()[0].placement.location += normal * 40.0;
    EXPECT_NE(kept(before(-1.0)), all - ahead);
    Entities()[0].placement = placement;
    Entities()[0].cropped = false;
    EXPECT_EQ(CountShown(), all);
    Entities()[0].cropped = true;
    drawing.sections[0].enabled = false;
    EXPECT_EQ(CountShown(), all);

    // A slanted clip with axes that no host would choose.
    const glm::dvec3 x = glm::normalize(glm::dvec3(1.0, 0.5, 0.2));
    const glm::dvec3 y = glm::normalize(glm::cross({0.1, 0.2, 1.0}, x));
    const double side = 0.15 * placement.scale * opened.box.Diagonal();
    drawing.clips = {
        {"", middle, x, y, {{-side, -side}, {2 * side, -side}, {0, side}}, true, true}};
    const auto beyond = [&](const glm::dvec3& p) {
        const double px = glm::dot(p - middle, x) / side;
        const double py = glm::dot(p - middle, y) / side;
        return std::min({py + 1, px * 2 + 1 - py, 1 - py - px});
    };
    const auto within = kept([&](const glm::dvec3& p) { return beyond(p) > -1e-3; });
    drawing.clips[0].keepsInside = false;
    EXPECT_EQ(kept([&](const glm::dvec3& p) { return beyond(p) < 1e-3; }), all - within);
    EXPECT_GT(within, all / 50);
    EXPECT_LT(within, all / 2);
    drawing.clips[0].enabled = false;
    EXPECT_EQ(CountShown(), all);
}

TEST_F(EngineTest, RequestsThatWaitAreReplacedAndDroppedAtTheEnd) {
    Show(MakeTree(3000));
    CountShown();
    std::vector<unsigned long long> answers;
    const auto request50 = [&] {
        for (int i = 0; i < 50; ++i) {
            Entities()[0].visible = i < 49;
            engine->Update(request, [&](const ViewResult& view) { answers.push_back(view.shown); });
        }
    };
    calls.Hold();
    engine->Properties(1, [](const auto&) {});
    request50();
    EXPECT_TRUE(engine->IsBusy());
    calls.LetGo();
    calls.RunUntil([this] { return !engine->IsBusy(); });
    ASSERT_FALSE(answers.empty());
    EXPECT_LE(answers.size(), 2U);
    EXPECT_EQ(answers.back(), 0U);

    // Files that wait to be opened do not keep the view waiting.
    std::string order;
    calls.Hold();
    engine->Properties(1, [](const auto&) {});
    engine->Open({}, false, "", [&order](const auto&) { order += "open "; });
    engine->Update(request, [&order](const auto&) { order += "update "; });
    engine->Fetch({}, {}, [&order](auto) { order += "fetch "; });
    calls.LetGo();
    calls.RunUntil([this] { return !engine->IsBusy(); });
    EXPECT_EQ(order, "fetch update open ");

    answers.clear();
    request50();
    calls.AwaitOne();
    engine.reset();
    bool isDone = false;
    calls.Post()([&isDone] { isDone = true; });
    calls.RunUntil([&isDone] { return isDone; });
    EXPECT_TRUE(answers.empty());
}

TEST_F(EngineTest, FilesThatCannotBeReadAreTold) {
    EXPECT_THAT(Open(7, folder.file("none.vpt")).problem, HasSubstr("none.vpt"));
    const std::string file = MakeTree(30000);
    std::filesystem::copy(file, folder.file("old.vpt"));
    std::fstream(folder.file("old.vpt"), std::ios::in | std::ios::out | std::ios::binary).put(8);
    EXPECT_THAT(Open(7, folder.file("old.vpt")).problem, HasSubstr("version"));
    vpc::test::writeBytes(folder.file("text.vpt"), std::string(5000, 'x'));
    EXPECT_NE(Open(7, folder.file("text.vpt")).problem, "");

    Show(file);
    EXPECT_EQ(Update().entities[0].problem, "");
    std::filesystem::resize_file(file, std::filesystem::file_size(file) * 2 / 3);
    request.camera.fieldHeight *= 1.01;
    const ViewResult cut = Update();
    EXPECT_LT(cut.shown, 30000U);
    EXPECT_THAT(cut.entities[0].problem, HasSubstr(file));
    EXPECT_EQ(Fetch(cut).size(), cut.shown);
    std::filesystem::remove(file);
    Entities()[0].cropped = false;
    EXPECT_THAT(Update().entities[0].problem, HasSubstr(file));
    // Nor does what is no placement and no camera do harm.
    Entities()[0].placement.scale = 0.0;
    EXPECT_THAT(Update().entities[0].problem, HasSubstr("scale"));
    Entities().clear();
    request.camera.eye = request.camera.target;
    EXPECT_EQ(CountShown(), 0U);
}

TEST_F(EngineTest, FilesShareADrawing) {
    const Engine::Opened metres = Show(MakeTree(30000));
    Show(MakeTree(10000, "Feet"));
    EXPECT_EQ(Entities()[0].placement.scale, 1.0);
    EXPECT_DOUBLE_EQ(Entities()[1].placement.scale, 0.3048);
    EXPECT_DOUBLE_EQ(std::get<double>(PropertyOf(2, "Unit factor").value), 0.3048);
    request.camera.perspective = false;
    request.camera.fieldHeight = 1e8;
    EXPECT_EQ(CountShown(), 40000U);
    Show(MakeTree(5));
    request.camera.perspective = false;
    request.camera.fieldHeight = 1e8;
    EXPECT_EQ(CountShown(), 40005U);
    // The small one stays whole.
    request.drawing.pointBudget = 21000;
    const ViewResult fewer = Update();
    EXPECT_LE(fewer.shown, 21000U);
    EXPECT_GT(fewer.entities[0].shown, 1500U);
    EXPECT_EQ(fewer.entities[1].shown, 10000U);
    EXPECT_EQ(Fetch(fewer).size(), fewer.shown);
    Entities()[0].visible = false;
    EXPECT_EQ(Update().inAll, 10005U);
    EXPECT_EQ(CountShown(), 10005U);
    // The drawing's unit is that of what was opened first.
    engine->Close(1);
    engine->Close(2);
    engine->Close(3);
    EXPECT_EQ(Open(4, Entities()[1].file).entity.placement.scale, 1.0);
    // A session knows it, whatever comes first of its files.
    engine->Close(4);
    const Engine::Opened feet = Open(5, Entities()[1].file, "Meters");
    EXPECT_DOUBLE_EQ(feet.entity.placement.scale, 0.3048);
    EXPECT_EQ(feet.drawingUnit, "Meters");
}

TEST_F(EngineTest, ThePaletteChangesWhatIsShown) {
    Show(MakeTree(30000));
    EXPECT_EQ(PropertyOf(1, "Color scheme").choices.size(), 8U);
    EXPECT_EQ(Set(1, "Stylization", std::string("Elevation")), "");
    EXPECT_EQ(Set(1, "Color scheme", 2LL), "");
    EXPECT_EQ(Set(1, "Scale", 2.0), "");
    EXPECT_EQ(Set(1, "Insertion Z", 100.0), "");
    EXPECT_EQ(Entities()[0].stylization, 4);
    EXPECT_EQ(Entities()[0].placement, (Placement{{0, 0, 100.0}, 0.0, 2.0}));
    PickAt({400, 300});
    EXPECT_EQ(std::get<long long>(PropertyOf(1, "Color scheme").value), 2);
    request.camera.perspective = false;
    request.camera.fieldHeight = 1e8;
    const ViewResult view = Update();
    const ShownEntity& shown = view.entities[0];
    EXPECT_EQ(shown.legendTitle, "Elevation");
    const auto points = Fetch(view);
    const draw::ColourRamp ramp(shown.ramp, shown.range);
    double lowest = 1e9;
    for (const PointVertex& vertex : points) {
        const double z = placeOf(vertex, view).z;
        lowest = std::min(lowest, z);
        const draw::Colour colour = ramp.Of(z);
        ASSERT_NEAR(colour.red, vertex.colour >> 16U, 4);
        ASSERT_NEAR(colour.green, vertex.colour >> 8U & 0xFFU, 4);
        ASSERT_NEAR(colour.blue, vertex.colour & 0xFFU, 4);
    }
    EXPECT_NEAR(lowest, shown.range.min, 1e-3);

    EXPECT_NE(Set(1, "Scale", 0.0), "");
    EXPECT_NE(Set(1, "Rotation", std::nan("")), "");
    EXPECT_NE(Set(1, "Rotation", std::string("north")), "");
    EXPECT_NE(Set(1, "Color scheme", 8LL), "");
    EXPECT_NE(Set(1, "Stylization", std::string("Plaid")), "");
    EXPECT_NE(Set(1, "Saved Path", std::string("/x.vpt")), "");
    EXPECT_TRUE(PropertyOf(1, "Scale").canBeSet);
    EXPECT_FALSE(PropertyOf(1, "Saved Path").canBeSet);
    EXPECT_EQ(Set(1, "Locked", true), "");
    EXPECT_THAT(Set(1, "Insertion X", 5.0), HasSubstr("locked"));
    EXPECT_FALSE(PropertyOf(1, "Insertion X").canBeSet);
    EXPECT_EQ(Set(1, "Name", std::string("Straße")), "");
    EXPECT_EQ(Entities()[0].name, "Straße");
    EXPECT_EQ(Entities()[0].placement, (Placement{{0, 0, 100.0}, 0.0, 2.0}));
    // An older state, as undo brings it, counts again, with and without an update between.
    Entities()[0].placement.scale = 3.0;
    Entities()[0].locked = false;
    EXPECT_EQ(Set(1, "Insertion X", 5.0), "");
    EXPECT_EQ(Entities()[0].placement, (Placement{{5.0, 0, 100.0}, 0.0, 3.0}));
    Entities()[0] = {1, Entities()[0].file, "", true, {}, 1, "", true, false};
    EXPECT_EQ(Update().entities[0].legendTitle, "");
    EXPECT_EQ(std::get<long long>(PropertyOf(1, "Stylization").value), 0);
}

}  // namespace
}  // namespace vpc::viewer::test
