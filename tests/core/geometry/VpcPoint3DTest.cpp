#include "core/geometry/VpcPoint3D.h"

#include <array>
#include <cmath>
#include <cstring>
#include <limits>
#include <sstream>
#include <string>
#include <type_traits>

#include <gtest/gtest.h>

#include "support/LocaleGuard.h"

namespace {

constexpr unsigned long long unset = ~0ULL;

VpcPoint3D samplePoint() {
    VpcPoint3D p(1.5, -2.25, 1e300, 0xABCD, 0x1234, 0xFFFF, -0.1, 7, 12.75);
    p.markerId = -123456789;
    p.workIndexA = 3;
    p.workIndexB = 4;
    return p;
}

/// Everything but the transient indices, bit for bit.
void expectSameRecordFields(const VpcPoint3D& a, const VpcPoint3D& b) {
    std::string left(54, '\0');
    std::string right(54, '\0');
    a.ToRecord(left.data());
    b.ToRecord(right.data());
    EXPECT_EQ(left, right) << a << " against " << b;
}

template <class T>
T valueAt(const char* bytes, std::size_t offset) {
    T value;
    std::memcpy(&value, bytes + offset, sizeof value);
    return value;
}

// --- Coordinates ---------------------------------------------------------------------------------

TEST(VpcCoordinate3D, ComparesRoundedToThePrecision) {
    const auto equal = [](double a, double b) {
        return VpcCoordinate3D(a, 0, 0, 1e-9) == VpcCoordinate3D(b, 0, 0, 1e-9);
    };
    EXPECT_TRUE(equal(1.0000000001, 1.0000000004));
    EXPECT_FALSE(equal(1.0000000004, 1.0000000006));
    EXPECT_TRUE(equal(-0.0, 0.0));
    for (int axis = 0; axis < 3; ++axis) {
        const VpcCoordinate3D other(axis == 0, axis == 1, axis == 2, 1e-9);
        EXPECT_FALSE(VpcCoordinate3D() == other) << axis;
    }
    const VpcCoordinate3D c;
    VpcCoordinate3D::changePrecision(1);
    EXPECT_TRUE(c.compareCoord(0.5, 1.4)) << "halves round away from zero";
    EXPECT_TRUE(c.compareCoord(-0.5, -1.4));
    EXPECT_FALSE(c.compareCoord(0.4, 0.5));
}

TEST(VpcCoordinate3D, EveryConstructionButNoAssignmentResetsThePrecision) {
    VpcCoordinate3D coordinate;
    VpcPoint3D point;
    VpcVector3D vector;
    const auto resets = [](const auto& construct) {
        VpcCoordinate3D::changePrecision(0.5);
        construct();
        return VpcCoordinate3D::sEpsilon == 1e-9 && VpcCoordinate3D::sRoundFactor == 1 / 1e-9;
    };
    EXPECT_TRUE(resets([] { VpcCoordinate3D(); }));
    EXPECT_TRUE(resets([&] { VpcCoordinate3D copy(coordinate); }));
    EXPECT_TRUE(resets([] { VpcPoint3D(); }));
    EXPECT_TRUE(resets([] { VpcPoint3D(1, 2, 3); }));
    EXPECT_TRUE(resets([&] { VpcPoint3D copy(point); }));
    EXPECT_TRUE(resets([] { VpcVector3D(1, 2, 3); }));
    EXPECT_TRUE(resets([&] { VpcVector3D copy(vector); }));
    EXPECT_TRUE(resets([&] { point.ToVpcVector3D(); }));

    const VpcCoordinate3D otherCoordinate;
    const VpcPoint3D otherPoint;
    const VpcVector3D otherVector;
    VpcCoordinate3D::changePrecision(0.5);
    coordinate = otherCoordinate;
    point = otherPoint;
    vector = otherVector;
    EXPECT_EQ(VpcCoordinate3D::sEpsilon, 0.5);
    EXPECT_EQ(VpcCoordinate3D::sRoundFactor, 2.0);
    VpcCoordinate3D(1, 2, 3, 0.25);
    EXPECT_EQ(VpcCoordinate3D::sEpsilon, 0.25);
    EXPECT_EQ(VpcCoordinate3D::sRoundFactor, 4.0);
    VpcCoordinate3D();
    EXPECT_EQ(VpcCoordinate3D::sRoundFactor, 999999999.9999999);
}

TEST(VpcCoordinate3D, HashesBitsWithBothZerosAlike) {
    // The mixing step with value 0 only multiplies the seed and adds: three times by hand.
    const unsigned long long m = 0xc6a4a7935bd1e995ULL;
    const unsigned long long c = 0xe6546b64ULL;
    EXPECT_EQ(VpcCoordinate3D().ToHash(), (c * m + c) * m + c);
    EXPECT_EQ(VpcCoordinate3D(0.0, -0.0, 0.0, 1e-9).ToHash(), VpcCoordinate3D().ToHash());
    const VpcCoordinate3D a(1.0000000001, 2, 3, 1e-9);
    const VpcCoordinate3D b(1.0000000002, 2, 3, 1e-9);
    EXPECT_TRUE(a == b);
    EXPECT_NE(a.ToHash(), b.ToHash());
    EXPECT_NE(VpcCoordinate3D(1, 2, 3, 1e-9).ToHash(), VpcCoordinate3D(3, 2, 1, 1e-9).ToHash());
    // The smallest double has the bits of 1: k = m, k ^= k >> 47, k *= m, onto a seed of 0.
    const unsigned long long first = (m ^ (m >> 47)) * m * m + c;
    const VpcCoordinate3D smallest(std::numeric_limits<double>::denorm_min(), 0, 0, 1e-9);
    EXPECT_EQ(smallest.ToHash(), (first * m + c) * m + c);
}

// --- Points --------------------------------------------------------------------------------------

TEST(VpcPoint3D, StartsWithTheRightAttributes) {
    const VpcPoint3D empty;
    EXPECT_EQ(empty.scannerDistance, 1.0);
    EXPECT_EQ(empty.markerId, -1);
    EXPECT_EQ(empty.sourceIndex, -1);
    EXPECT_EQ(empty.workIndexA, unset);
    EXPECT_EQ(empty.workIndexB, unset);
    const VpcPoint3D byNumbers(1, 2, 3);
    const VpcPoint3D byCoordinate(VpcCoordinate3D(1, 2, 3, 1e-9));
    const VpcPoint3D byVector(VpcVector3D(1, 2, 3));
    for (const VpcPoint3D& p : {byNumbers, byCoordinate, byVector}) {
        EXPECT_EQ(p.z, 3);
        EXPECT_EQ(p.scannerDistance, -1.0);
        EXPECT_EQ(p.intensity, 0.0);
        EXPECT_EQ(p.sourceIndex, -1);
        EXPECT_EQ(p.workIndexB, unset);
    }
    static_assert(!std::is_polymorphic_v<VpcPoint3D> && sizeof(VpcPoint3D) == 72);
}

TEST(VpcPoint3D, SetValuesKeepsMarkerAndIndices) {
    VpcPoint3D p = samplePoint();
    p.SetValues(1, 2, 3, 4, 5, 6, 7.5, 8, 9.5);
    VpcPoint3D expected(1, 2, 3, 4, 5, 6, 7.5, 8, 9.5);
    expected.markerId = -123456789;
    expectSameRecordFields(p, expected);
    EXPECT_EQ(p.workIndexA, 3U);
    EXPECT_EQ(p.workIndexB, 4U);
}

TEST(VpcPoint3D, MovesWithItsAttributes) {
    const VpcPoint3D p = samplePoint();
    VpcPoint3D expected = p;
    expected.SetCoordinates(2.5, -0.25, 1e300);
    const VpcPoint3D moved = p + VpcVector3D(1, 2, 3);
    expectSameRecordFields(moved, expected);
    EXPECT_EQ(moved.workIndexA, 3U);
    expectSameRecordFields(moved - VpcVector3D(1, 2, 3), p);
    EXPECT_EQ(VpcPoint3D(1, 2, 3).DistanceTo(VpcPoint3D(3, 5, 9)), 7);
    EXPECT_EQ(VpcPoint3D(3, 5, 9).DistanceTo(1, 2, 3), 7);
}

TEST(VpcPoint3D, RecordHasEveryFieldAtItsPlace) {
    std::array<char, 110> block;
    block.fill('#');
    FileBufferStream stream;
    stream.AttachExternalBuffer(block.data(), block.size());
    const VpcPoint3D p = samplePoint();
    EXPECT_EQ(VpcPoint3D::SerializeDiskSize(), 54U);
    EXPECT_EQ(p.Serialize(stream, false), 54U);
    EXPECT_EQ(p.Serialize(stream, true), 108U);
    EXPECT_EQ(stream.bufferCursor - stream.bufferStart, 108);
    EXPECT_EQ(block[108], '#');

    for (const std::size_t start : {0U, 54U}) {
        const char* record = &block[start];
        EXPECT_EQ(valueAt<double>(record, 0), 1.5);
        EXPECT_EQ(valueAt<double>(record, 8), -2.25);
        EXPECT_EQ(valueAt<double>(record, 16), 1e300);
        EXPECT_EQ(valueAt<double>(record, 30), -0.1);
        EXPECT_EQ(valueAt<double>(record, 38), 12.75);
        EXPECT_EQ(valueAt<int>(record, 46), -123456789);
        EXPECT_EQ(valueAt<int>(record, 50), 7);
    }
    const std::string colours(&block[24], 6);
    EXPECT_EQ(colours, "\xCD\xAB\x34\x12\xFF\xFF");
    const std::string eightBitColours(&block[78], 6);
    EXPECT_EQ(eightBitColours, std::string("\xAB\0\x12\0\xFF\0", 6));

    stream.ReleaseBuffer();
    stream.AttachExternalBuffer(block.data(), block.size());
    VpcPoint3D back;
    back.workIndexA = 11;
    EXPECT_EQ(back.DeSerialize(stream), 54U);
    expectSameRecordFields(back, p);
    EXPECT_EQ(back.workIndexA, 11U);
    EXPECT_EQ(back.DeSerialize(stream), 108U);
    EXPECT_EQ(back.red, 0x00AB);
}

TEST(VpcPoint3D, TextHasADecimalPointInEveryLocale) {
    for (const char* name : {"C", "de_DE.UTF-8"}) {
        const vpc::test::LocaleGuard locale(name);
        if (!locale.isSet()) continue;
        EXPECT_EQ(VpcPoint3D(1, 2, 3).ToString(true), " ( 1.000000, 2.000000, 3.000000 ) ");
        EXPECT_EQ(VpcPoint3D(-0.5, 1234567.8901234, 1e-7).ToString(false),
                  "-0.500000\t1234567.890123\t0.000000");
        EXPECT_EQ(VpcVector3D(1234567, 0.1, -2.5).ToString(false), "1.23457e+06 0.1 -2.5");
    }
    const double infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(VpcVector3D(std::nan(""), -infinity, 3).ToString(true), " ( 0, 0, 3 ) ");
    EXPECT_EQ(VpcPoint3D(1e308, 0, 0).ToString(false).length(), 309 + 7 + 2 * 9);
    std::ostringstream narrow;
    std::wostringstream wide;
    narrow << VpcPoint3D(1, 2, 3) << '|' << VpcVector3D(1, 2, 3);
    wide << VpcPoint3D(1, 2, 3);
    EXPECT_EQ(narrow.str(), "1.000000\t2.000000\t3.000000|1 2 3");
    EXPECT_EQ(wide.str(), L"1.000000\t2.000000\t3.000000");
}

}  // namespace
