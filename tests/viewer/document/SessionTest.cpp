#include "viewer/document/Session.h"

#include <cfloat>
#include <clocale>
#include <filesystem>
#include <fstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "viewer/document/SessionFile.h"
#include "viewer/document/Units.h"

namespace vpc::viewer {
namespace {

using ::testing::HasSubstr;

Session everything() {
    Session session;
    Entity entity;
    entity.id = 1;
    entity.file =
        "/data/site/scans/H\xc3\xb6"
        "fe \"1\".vpt";
    entity.name =
        "H\xc3\xb6"
        "fe";
    entity.visible = false;
    entity.placement = {{0.1, 5'000'000.123456789, DBL_TRUE_MIN}, 1.0 / 3.0, DBL_MAX};
    entity.stylization = 5;
    entity.colourScheme = "{00000000-0000-0000-0000-000000000001}";
    entity.cropped = false;
    entity.locked = true;
    session.drawing.entities = {entity, entity};
    session.drawing.entities[1].id = 2;
    session.drawing.entities[1].file = "/elsewhere/b.vpt";
    session.drawing.sections = {{"cut", {1e-17, -0.0, 3.0}, {0.6, 0.0, 0.8}, false}};
    session.drawing.clips = {{"hall",
                              {1.0, 2.0, 3.0},
                              {0.0, 1.0, 0.0},
                              {0.0, 0.0, 1.0},
                              {{0.1, 0.2}, {0.3, 0.7}, {-1e-9, 12345.678901234567}},
                              false,
                              false}};
    session.drawing.style = {
        PointSizing::ByDistance, 0.0123, false, false, {1, 2, 3}, false, false, false};
    session.drawing.unit = "Millimeters";
    session.drawing.pointBudget = 123'456'789'012ULL;
    session.camera = {
        {5e6, 5e6, 1.0 / 7.0}, {5e6, 5e6 + 1.0, 1.0 / 7.0}, {0.0, 0.0, 1.0}, 0.7, false};
    return session;
}

std::string problemOf(const std::string& text) {
    try {
        sessionFromText(text, "/data/a.vpcview");
    } catch (const SessionError& error) {
        return error.what();
    }
    return "none";
}

std::string replaced(std::string text, const std::string& what, const std::string& with) {
    const auto found = text.find(what);
    EXPECT_NE(found, std::string::npos) << what;
    return text.replace(found, what.size(), with);
}

class SessionTest : public ::testing::Test {
protected:
    // A decimal comma, where the environment has one, must not reach the numbers.
    void SetUp() override { std::setlocale(LC_ALL, ""); }
    void TearDown() override { std::setlocale(LC_ALL, "C"); }
};

TEST_F(SessionTest, IsTheSameAfterSavingAndOpeningAndMovesWithItsFolder) {
    const Session session = everything();
    const std::string text = sessionText(session, "/data/site/a.vpcview");
    EXPECT_EQ(sessionFromText(text, "/data/site/a.vpcview"), session);
    EXPECT_EQ(sessionText(sessionFromText(text, "/data/site/a.vpcview"), "/data/site/a.vpcview"),
              text);
    const Session moved = sessionFromText(text, "/other/b.vpcview");
    EXPECT_EQ(moved.drawing.entities[0].file,
              "/other/scans/H\xc3\xb6"
              "fe \"1\".vpt");
    EXPECT_EQ(moved.drawing.entities[1].file, "/elsewhere/b.vpt");
    EXPECT_EQ(sessionFromText(sessionText({}, "x.vpcview"), "x.vpcview"), Session{});
    EXPECT_EQ(sessionFromText(replaced(text, "{", R"({"later": [{}], )"), "/data/site/a.vpcview"),
              session);
    EXPECT_EQ(sessionFromText(R"({"vpcview": 1})", "a"), Session{});
}

TEST(UnitsTest, StandsBehindANumber) {
    EXPECT_EQ(Units::Symbol("Millimeters"), "mm");
    EXPECT_EQ(Units::Symbol("Undefined"), "");
}

TEST_F(SessionTest, ABadOneIsRefusedWithASentenceThatTellsWhere) {
    const std::string text = sessionText(everything(), "/data/site/a.vpcview");
    const auto expect = [&](const std::string& what, const std::string& with,
                            const std::string& problem) {
        EXPECT_THAT(problemOf(replaced(text, what, with)), HasSubstr(problem)) << with;
    };
    expect("\"scale\": ", "\"scale\": -", "\"entities[1].scale\" is not above 0");
    expect("\"scale\": 1", "\"scale\": 1e999, \"s\": 1", "too large");
    expect("\"name\": \"cut\"", "\"name\": 5", "\"sections[1].name\" is no text");
    expect("0.6", "0.7", "\"sections[1].normal\" is no direction of length 1");
    expect("\"corners\"", "\"c\"", "\"clips[1].corners\" are fewer than three");
    expect("123456789012", "-1", "\"pointBudget\" is no whole number");
    expect("\"by distance\"", "\"by hand\"", "\"style.sizing\" is unknown");
    expect("\"fieldHeight\": 0.7", "\"fieldHeight\": 0.0", "\"camera\" shows nothing");
    expect("\"entities\"", "\"entities\": {}, \"e\"", "\"entities\" is no list");
    expect("\"vpcview\": 1", "\"vpcview\": 2", "newer version");
    expect("\"vpcview\": 1", "\"version\": 1", "something else");
    EXPECT_THAT(problemOf(text.substr(0, text.size() / 2)), HasSubstr("/data/a.vpcview"));
    EXPECT_THAT(problemOf(""), HasSubstr("no JSON file"));
    EXPECT_THAT(problemOf(std::string(1'000'000, '[')), HasSubstr("something else"));
    Session broken = everything();
    broken.drawing.entities[0].file = "/data/site/\xff.vpt";
    EXPECT_THROW(sessionText(broken, "/data/site/a.vpcview"), SessionError);
    broken = everything();
    broken.camera.eye.x = DBL_MAX * 10.0;
    EXPECT_THROW(sessionText(broken, "/data/site/a.vpcview"), SessionError);
}

TEST(SessionFileTest, ReplacesAnOlderOneWholeOrNotAtAll) {
    const auto folder =
        std::filesystem::temp_directory_path() / ("vpc-session-" + std::to_string(getpid()));
    std::filesystem::create_directories(folder);
    const std::string file = folder / "\xc3\xa4 1.vpcview";
    const std::string link = folder / "link.vpcview";
    std::filesystem::create_symlink(file, link);
    saveSession({}, file);
    saveSession(everything(), link);
    EXPECT_TRUE(std::filesystem::is_symlink(link));
    EXPECT_EQ(openSession(file), everything());
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder), {}), 2);
    EXPECT_THROW(saveSession({}, folder / "none" / "a.vpcview"), SessionError);
    EXPECT_THROW(openSession(folder), SessionError);
    EXPECT_THROW(openSession(folder / "none"), SessionError);
    std::ofstream(file).close();
    EXPECT_THROW(openSession(file), SessionError);
    std::filesystem::resize_file(file, 1ULL << 40U);
    EXPECT_THROW(openSession(file), SessionError);
    std::filesystem::remove_all(folder);
}

}  // namespace
}  // namespace vpc::viewer
