#include "tree/disk/VpcDiskTreeQuerier.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "core/util/StringTools.h"
#include "platform/OdGePoint3d.h"
#include "support/ReaderTools.h"
#include "support/TreeImage.h"
#include "tree/file/NodeRecordReader.h"
#include "tree/file/PointTreeReader.h"

namespace {

using vpc::test::joined;
using vpc::test::TreeImage;

class VpcDiskTreeQuerierTest : public testing::Test {
protected:
    /// The tree file's name with another extension, which must not matter.
    OdString name() const {
        return StringTools::ToOdString(vpc::test::toWx(folder.file("tree.pts")));
    }
    void write(const std::string& bytes) const {
        vpc::test::writeBytes(folder.file("tree.vpt"), bytes);
    }
    /// Asks for everything in a file of these bytes; no answer may lie beyond its end.
    unsigned long long expectAnswersWithin(const std::string& bytes) const {
        write(bytes);
        VpcDiskTreeQuerier querier(name());
        for (const unsigned long long level : {0ULL, 1ULL, 2ULL, 5ULL, ~0ULL})
            for (const unsigned long long index : {0ULL, 1ULL, 1000000ULL}) {
                EXPECT_LE(querier.getOffsetHeaderNode(level, index), bytes.size());
                EXPECT_LE(querier.getOffsetHeaderMember(level, index, OffsetHeaderChildEntries),
                          bytes.size());
                OdGePoint3d min, max;
                querier.nodeNrPoints(level, index);
                querier.nodeExtents(level, index, min, max);
            }
        EXPECT_LE(querier.getOffsetPointData(), bytes.size());
        EXPECT_EQ(querier.isOpen(), querier.fault().empty());
        EXPECT_EQ(querier.getOffsetPointData(), endOfRecords(querier.fileName()));
        return querier.getOffsetPointData();
    }
    /// Where the reader of all records ends; 0 where it fails.
    static unsigned long long endOfRecords(const wxString& file) {
        try {
            vpc::PointTreeReader tree(file);
            vpc::NodeRecordReader reader(tree);
            vpc::NodeRecord record;
            while (reader.Next(record)) EXPECT_LE(record.position + record.size, tree.Size());
            return reader.Position();
        } catch (const vpc::IoError&) {
            return 0;
        }
    }

    vpc::test::TempFolder folder;
    TreeImage image{{U"a", U"\u00e9t\u00e9\U0001D518"}};
};

TEST_F(VpcDiskTreeQuerierTest, FindsEveryMemberOfTheHeaderAndOfEveryNode) {
    write(image.bytes);
    VpcDiskTreeQuerier querier(name());
    ASSERT_TRUE(querier.isOpen()) << querier.fault();
    const vpc::PointTreeHeader& h = querier.header();
    EXPECT_EQ(joined(h.version, h.treeType, h.minimumDistance, h.largestNodeCount, h.flag, h.maxRed,
                     h.maxGreen, h.maxBlue, h.maxIntensity, h.hostValue, h.sourceNameBytes),
              "9 0 0.25 5 0 255 254 253 99.5 6 44");
    EXPECT_EQ(h.sourceNames[1], wxString::FromUTF8("\u00e9t\u00e9\U0001D518"));
    for (std::size_t n = 0; n < image.nodes.size(); ++n) {
        const TreeImage::Node& node = image.nodes[n];
        const unsigned long long index = n == 2 ? 1 : 0;  // its place in its level
        SCOPED_TRACE(n);
        for (int member = -1; member <= 17; ++member)
            EXPECT_EQ(querier.getOffsetHeaderMember(node.level, index,
                                                    static_cast<offsetHeaderMemberType>(member)),
                      node.members[static_cast<std::size_t>(std::clamp(member, 0, 16))])
                << member;
        EXPECT_EQ(joined(querier.getOffsetHeaderNode(node.level, index),
                         querier.getOffsetPointBlock(node.level, index),
                         querier.getOffsetPointList(node.level, index),
                         querier.nodeNrPoints(node.level, index)),
                  joined(node.members[0], node.members[12], node.members[13], node.points));
        OdGePoint3d min, max;
        ASSERT_TRUE(querier.nodeExtents(node.level, index, min, max));
        EXPECT_EQ(min, OdGePoint3d(node.low[0], node.low[1], node.low[2]));
        EXPECT_EQ(max, OdGePoint3d(node.high[0], node.high[1], node.high[2]));
    }
}

TEST_F(VpcDiskTreeQuerierTest, TruncationsAndDamagedBytesLeadNowhere) {
    for (std::size_t length = 0; length < image.bytes.size(); ++length)
        EXPECT_EQ(expectAnswersWithin(image.bytes.substr(0, length)),
                  length < image.pointData() ? 0 : image.pointData())
            << length;
    std::mt19937 random(7);
    const std::array<unsigned long long, 6> words = {
        0, 1, ~0ULL, 1ULL << 63, 0x5555555555555556ULL, 0x100000001ULL};
    for (int round = 0; round < 1500; ++round) {
        TreeImage damaged = image;
        for (unsigned change = 0; change <= random() % 3; ++change) {
            damaged.bytes[random() % image.pointData()] = static_cast<char>(random());
            damaged.patch(random() % image.pointData(), words[random() % words.size()]);
        }
        expectAnswersWithin(damaged.bytes);
    }
    image.patch(image.nodes[0].members[8], 1ULL << 63);  // a product that overflows
    write(image.bytes);
    EXPECT_EQ(VpcDiskTreeQuerier(name()).getOffsetHeaderNode(1, 0), 0U);
}

}  // namespace
