#include "core/geometry/VpcPoint3D.h"

#include <cmath>
#include <limits>
#include <sstream>
#include <string>
#include <type_traits>

#include <gtest/gtest.h>

#include "core/util/FileBufferStream.h"
#include "support/LocaleGuard.h"
#include "support/PointRecord.h"

namespace {

// --- Coordinates ---------------------------------------------------------------------------------

TEST(VpcCoordinate3D, ComparesRoundedToThePrecision) {
    const auto equal = [](double a, double b) {
        return VpcCoordinate3D(0, 0, a, 1e-9) == VpcCoordinate3D(0, 0, b, 1e-9);
    };
    EXPECT_TRUE(equal(1.0000000001, 1.0000000004) && equal(-0.0, 0.0));
    EXPECT_FALSE(equal(1.0000000004, 1.0000000006));
    const VpcCoordinate3D c;
    VpcCoordinate3D::changePrecision(1);
    EXPECT_TRUE(c.compareCoord(0.5, 1.4) && c.compareCoord(-0.5, -1.4)) << "away from zero";
    EXPECT_FALSE(c.compareCoord(0.4, 0.5));
}

TEST(VpcCoordinate3D, EveryConstructionButNoAssignmentResetsThePrecision) {
    VpcPoint3D point;
    VpcVector3D vector;
    const auto resets = [](const auto& construct) {
        VpcCoordinate3D::changePrecision(0.5);
        construct();
        return VpcCoordinate3D::sRoundFactor == 999999999.9999999;
    };
    EXPECT_TRUE(resets([] { VpcPoint3D(1, 2, 3); }) && resets([&] { VpcPoint3D copy(point); }));
    EXPECT_TRUE(resets([&] { VpcVector3D copy(vector); }));
    const VpcPoint3D otherPoint;
    const VpcVector3D otherVector;
    VpcCoordinate3D(1, 2, 3, 0.25);
    point = otherPoint;
    vector = otherVector;
    EXPECT_EQ(VpcCoordinate3D::sRoundFactor, 4.0);
}

TEST(VpcCoordinate3D, HashesBitsWithBothZerosAlike) {
    const auto hash = [](double x, double y, double z) {
        return VpcCoordinate3D(x, y, z, 1e-9).ToHash();
    };
    // The mixing step with value 0 only multiplies the seed and adds: three times by hand.
    const unsigned long long m = 0xc6a4a7935bd1e995ULL;
    const unsigned long long c = 0xe6546b64ULL;
    EXPECT_EQ(hash(0, 0, 0), (c * m + c) * m + c);
    EXPECT_EQ(hash(0.0, -0.0, 0.0), hash(0, 0, 0));
    EXPECT_NE(hash(1, 2, 3), hash(3, 2, 1));
    // The smallest double has the bits of 1: k = m, k ^= k >> 47, k *= m, onto a seed of 0.
    const unsigned long long first = (m ^ (m >> 47)) * m * m + c;
    EXPECT_EQ(hash(std::numeric_limits<double>::denorm_min(), 0, 0), (first * m + c) * m + c);
}

// --- Points --------------------------------------------------------------------------------------

/// Everything but the transient indices, as a record made by hand holds it.
std::string recordOf(const VpcPoint3D& p) {
    const vpc::test::PointRecord record{p.x,        p.y,          p.z,         p.red,
                                        p.green,    p.blue,       p.intensity, p.scannerDistance,
                                        p.markerId, p.sourceIndex};
    return record.bytes();
}

TEST(VpcPoint3D, KeepsWhatAnOperationDoesNotSet) {
    static_assert(!std::is_polymorphic_v<VpcPoint3D> && sizeof(VpcPoint3D) == 72);
    EXPECT_EQ(VpcPoint3D().scannerDistance, 1.0);
    const VpcVector3D at(1, 2, 3);
    for (const auto& p : {VpcPoint3D(1, 2, 3), VpcPoint3D(at), VpcPoint3D(at.ToVpcCoordinate3D())})
        EXPECT_EQ(recordOf(p), recordOf({1, 2, 3, 0, 0, 0, 0, -1, -1})) << "-1 on purpose";
    VpcPoint3D p(1, 2, 3, 0xABCD, 0x1234, 0xFFFF, -0.1, 7, 12.75);
    p.markerId = -123456789;
    VpcPoint3D moved = p - VpcVector3D(1, 2, 3);
    moved.SetCoordinates(1, 2, 3);
    EXPECT_EQ(recordOf(moved), recordOf(p));
    p.SetValues(1, 2, 3, 4, 5, 6, 7.5, 8, 9.5);
    VpcPoint3D expected(1, 2, 3, 4, 5, 6, 7.5, 8, 9.5);
    expected.markerId = -123456789;
    EXPECT_EQ(recordOf(p), recordOf(expected));
}

TEST(VpcPoint3D, SerializesRecordsOneAfterAnother) {
    VpcPoint3D p(1.5, -2.25, 1e300, 0xABCD, 0x1234, 0xFFFF, -0.1, 7, 12.75);
    p.markerId = -123456789;
    std::string block(110, '#');
    FileBufferStream stream;
    stream.AttachExternalBuffer(block.data(), block.size());
    EXPECT_EQ(p.Serialize(stream, false), 54U);
    EXPECT_EQ(p.Serialize(stream, true), 108U);
    VpcPoint3D eightBit = p;
    eightBit.red = 0xAB, eightBit.green = 0x12, eightBit.blue = 0xFF;
    EXPECT_EQ(block, recordOf(p) + recordOf(eightBit) + "##");

    stream.bufferCursor = stream.bufferStart;
    VpcPoint3D back;
    EXPECT_EQ(back.DeSerialize(stream), 54U);
    EXPECT_EQ(recordOf(back), recordOf(p));
}

TEST(VpcPoint3D, TextHasADecimalPointInEveryLocale) {
    for (const char* name : {"C", "de_DE.UTF-8"}) {
        const vpc::test::LocaleGuard locale(name);
        if (!locale.isSet()) continue;
        EXPECT_EQ(VpcPoint3D(1, 2, 3).ToString(true), " ( 1.000000, 2.000000, 3.000000 ) ");
        EXPECT_EQ(VpcVector3D(1234567, 0.1, -2.5).ToString(false), "1.23457e+06 0.1 -2.5");
        std::ostringstream narrow;
        narrow << VpcPoint3D(-0.5, 1234567.8901234, 1e-7) << '|' << VpcVector3D(1, 2, 3);
        EXPECT_EQ(narrow.str(), "-0.500000\t1234567.890123\t0.000000|1 2 3");
    }
    const double infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(VpcVector3D(std::nan(""), -infinity, 3).ToString(true), " ( 0, 0, 3 ) ");
    EXPECT_EQ(VpcPoint3D(1e308, 0, 0).ToString(false).length(), 309 + 7 + 2 * 9);
}

}  // namespace
