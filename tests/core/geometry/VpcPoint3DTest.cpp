#include "core/geometry/VpcPoint3D.h"

#include <string>
#include <type_traits>

#include <gtest/gtest.h>

#include "core/util/FileBufferStream.h"
#include "support/PointRecord.h"

namespace {

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
    EXPECT_EQ(VpcPoint3D(1, 2, 3).scannerDistance, -1.0) << "another one on purpose";
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

}  // namespace
