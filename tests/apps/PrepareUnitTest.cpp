#include "support/LasBuilder.h"
#include "support/ProgramRun.h"

namespace vpc::test {
namespace {

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;
using Keys = std::vector<std::array<std::uint16_t, 4>>;
using Records = std::vector<LasBuilder::Record>;

constexpr const char* metreWkt = R"(PROJCS["a",GEOGCS["b",DATUM["c",SPHEROID["d",6378137,298.257]],
    PRIMEM["e",0],UNIT["degree",0.0174532925199433]],PROJECTION["Transverse_Mercator"],
    PARAMETER["central_meridian",9],UNIT["metre",1]])";

/// A metric system whose heights are in US survey feet.
std::string compoundWkt() {
    return std::string("COMPD_CS[\"f\",") + metreWkt +
           ",VERT_CS[\"g\",VERT_DATUM[\"h\",2005],UNIT[\"US survey foot\",0.3048006096012192]]]";
}

class PrepareUnitTest : public ProgramTest {
protected:
    static std::string las(const Records& records, const Records& extended = {},
                           std::uint16_t encoding = 0) {
        LasBuilder file;
        file.versionMinor = extended.empty() ? 2 : 4;
        file.globalEncoding = encoding;
        file.records = records;
        file.extendedRecords = extended;
        file.points = {{1, 2, 3}, {40000, 50000, 600}};
        return file.bytes();
    }
    static std::string lasWithKeys(const Keys& keys, const std::string& doubles = "") {
        return las({{34735, LasBuilder::keys(keys)}, {34736, doubles}});
    }
    /// The stored unit, after what was said on standard error.
    std::string prepared(const std::string& arguments) const {
        const ProgramResult result = run("prepare -o t.vpt " + arguments);
        EXPECT_EQ(result.status, 0) << result.err;
        return result.err + "-> " + std::to_string(folder.tree().hostValue);
    }
    std::string preparedAlone(const std::string& bytes, const std::string& options = "") const {
        write("a.las", bytes);
        return prepared("a.las " + options);
    }
};

TEST_F(PrepareUnitTest, IsWhatTheScanNames) {
    std::string yard(8, '\0');
    const double metres = 0.9144;
    std::memcpy(yard.data(), &metres, sizeof metres);
    const std::pair<std::string, const char*> cases[] = {
        {lasWithKeys({{3076, 0, 1, 9001}}),
         "the unit is Meters, as the scans say ('a.las': metre)\n-> 6"},
        {lasWithKeys({{1024, 0, 1, 1}, {2048, 0, 1, 4269}, {3076, 0, 1, 9002}}), "foot)\n-> 2"},
        {lasWithKeys({{3072, 0, 1, 32618}}), "-> 6"},
        {lasWithKeys({{3072, 0, 1, 2992}}), "-> 2"},  // Oregon, in feet
        {lasWithKeys({{3076, 0, 1, 32767}, {3077, 34736, 1, 0}}, yard), "0.9144 m)\n-> 10"},
        {las({{2112, metreWkt}}), "metre)\n-> 6"},
        {las({}, {{1, "x"}, {2112, metreWkt}}), "metre)\n-> 6"},
        // Some headers say that the text counts.
        {las({{34735, LasBuilder::keys({{3076, 0, 1, 9002}})}, {2112, metreWkt}}),
         "warning: 'a.las': the unit is foot (by its GeoTIFF keys) but also metre (by its WKT); "
         "the "
         "former is taken\n-> 2"},
        {las({{34735, LasBuilder::keys({{3076, 0, 1, 9002}})}, {2112, metreWkt}}, {{1, ""}}, 16),
         "metre (by its WKT) but also foot"},
        {lasWithKeys({{3076, 0, 1, 9003}}),
         "US survey foot (by its GeoTIFF keys), which has no code of its own; Feet is stored, "
         "609.6 "
         "mm off at the largest coordinate (1000001)\n-> 2"},
        {lasWithKeys({{2048, 0, 1, 4269}}),
         "Meters, since no code fits ('a.las': degree)\nvpc prepare: warning: 'a.las': eastings "
         "and "
         "northings are angles, in degree (by its GeoTIFF keys); Meters is stored"},
        {lasWithKeys({{3072, 0, 1, 4269}}), "are angles, in degree (by its system EPSG:4269)"},
        {lasWithKeys({{3076, 0, 1, 9097}}),
         "the unit is chain (by its GeoTIFF keys), which has no"},
        {las({{2112, compoundWkt()}}),
         "the unit of heights is US survey foot (by its WKT) and that"},
        {lasWithKeys({{3076, 0, 1, 9001}, {4099, 0, 1, 9002}}), "heights is foot (by its Geo"}};
    for (const auto& [bytes, said] : cases) EXPECT_THAT(preparedAlone(bytes), HasSubstr(said));
}

TEST_F(PrepareUnitTest, IsMetresWhereAScanNamesNoneOrIsDamaged) {
    const std::string feet = LasBuilder::keys({{3076, 0, 1, 9002}});
    std::string manyKeys = feet;
    manyKeys.replace(6, 2, 2, '\xFF');
    std::string huge = las({}, {{2112, metreWkt}});
    huge.replace(235, 8, 8, '\xFF');
    std::string countless = las({}, {{1, "", "", ~std::uint64_t{0}}});
    countless.replace(243, 4, 4, '\xFF');
    const std::string cases[] = {las({}),
                                 las({{34735, feet, "someone else"}}),
                                 las({{34735, feet.substr(0, 15)}}),
                                 las({{34735, feet, "LASF_Projection", 0xFFFF}}),
                                 las({{34735, ""}}),
                                 huge,
                                 countless};
    const std::string silent =
        "vpc prepare: the unit is Meters, since no scan names one; --unit can name another\n";
    for (const std::string& bytes : cases)
        EXPECT_THAT(preparedAlone(bytes), AllOf(StartsWith(silent), EndsWith("-> 6")));
    const std::pair<std::string, const char*> unknown[] = {
        {lasWithKeys({{3076, 0, 1, 1}}), "its GeoTIFF keys"},
        {lasWithKeys({{3072, 0, 1, 9}}), "its system EPSG:9"},
        {lasWithKeys({{3076, 0, 1, 32767}, {3077, 34736, 1, 7}}, std::string(16, '\0')),
         "its GeoTIFF keys"},
        {lasWithKeys({{3076, 0, 1, 32767}, {3077, 34736, 1, 0}}, std::string(16, '\xFF')),
         "its GeoTIFF keys"},
        {las({{2112, "PROJCS[\"" + std::string(60000, '[')}}), "its WKT"},
        {las({{2112, std::string(9, '\xFF')}}), "its WKT"}};
    for (const auto& [bytes, source] : unknown)
        EXPECT_EQ(preparedAlone(bytes), silent +
                                            "vpc prepare: warning: 'a.las': no unit is known for " +
                                            source + "; Meters is stored\n-> 6");
    EXPECT_THAT(preparedAlone(las({{34735, manyKeys}})), HasSubstr("foot)\n-> 2"));
    write("a.pts", "1\n1 2 3\n");
    EXPECT_THAT(prepared("a.pts"), HasSubstr("no scan names one"));
}

TEST_F(PrepareUnitTest, IsWhatTheOptionSays) {
    const std::string feet = lasWithKeys({{3076, 0, 1, 9002}});
    EXPECT_EQ(preparedAlone(feet, "--unit ft"), "-> 2");
    EXPECT_EQ(preparedAlone(feet, "--unit 0"), "-> 0");
    EXPECT_EQ(
        preparedAlone(feet, "--unit METRES"),
        "vpc prepare: warning: 'a.las': the unit is foot (by its GeoTIFF keys), but --unit says "
        "Meters; Meters is stored\n-> 6");
    EXPECT_THAT(preparedAlone(feet, "--unit us-ft"), HasSubstr("--unit says US survey foot; Feet"));
    EXPECT_THAT(preparedAlone(lasWithKeys({{3076, 0, 1, 9003}}), "--unit ft"),
                HasSubstr("609.6 mm"));
    write("a.pts", "1\n1 2 3\n");
    EXPECT_THAT(prepared("a.pts --unit us-ft"), HasSubstr("2.0 mm off a kilometre\n-> 2"));
    const std::pair<const char*, int> names[] = {
        {"m", 6},  {"metre", 6}, {"Meter", 6}, {"mm", 4},     {"km", 7},
        {"in", 1}, {"inch", 1},  {"foot", 2},  {"yards", 10}, {"kilometres", 7}};
    for (const auto& [name, code] : names)
        EXPECT_EQ(prepared(std::string("a.pts --unit ") + name), "-> " + std::to_string(code));
}

TEST_F(PrepareUnitTest, TellsWhereScansDisagree) {
    write("a.las", lasWithKeys({{3076, 0, 1, 9001}}));
    for (const char* name : {"b.las", "c.las"}) write(name, lasWithKeys({{3076, 0, 1, 9002}}));
    write("d.las", las({}));
    EXPECT_EQ(
        prepared("--quiet a.las b.las c.las d.las"),
        "vpc prepare: warning: the scans name different units ('a.las': metre, 'b.las' and 1 "
        "other: foot); Meters is stored for all of them, and no coordinate is converted\n-> 6");
    EXPECT_THAT(prepared("d.las b.las c.las"),
                testing::AllOf(HasSubstr("scans that name none: 1\n-> 2"), Not(HasSubstr("warn"))));
}

}  // namespace
}  // namespace vpc::test
