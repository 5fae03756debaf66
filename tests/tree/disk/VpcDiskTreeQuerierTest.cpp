#include "tree/disk/VpcDiskTreeQuerier.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

#include "core/util/StringTools.h"
#include "platform/OdGePoint3d.h"
#include "support/TempFolder.h"
#include "support/TreeImage.h"
#include "tree/disk/NodeRecordReader.h"

namespace {

using testing::ElementsAre;
using vpc::test::TempFolder;
using vpc::test::TreeImage;

class VpcDiskTreeQuerierTest : public testing::Test {
protected:
    OdString name(const std::string& file = "tree.vpt") const {
        return StringTools::ToOdString(vpc::test::toWx(folder.file(file)));
    }
    void write(const std::string& bytes) const {
        vpc::test::writeBytes(folder.file("tree.vpt"), bytes);
    }

    TempFolder folder;
    TreeImage image{{U"a", U"\u00e9t\u00e9\U0001D518"}};
};

/// Place of a node of the image in its level.
unsigned long long indexOf(std::size_t node) {
    return node == 2 ? 1 : 0;
}

TEST_F(VpcDiskTreeQuerierTest, ReadsTheHeaderAtItsPositions) {
    image.patch(32, true);
    image.patch(8, 1ULL);
    write(image.bytes);
    VpcDiskTreeQuerier querier(name());
    ASSERT_TRUE(querier.isOpen()) << querier.fault();
    const vpc::PointTreeHeader& header = querier.header();
    EXPECT_EQ(header.version, 9U);
    EXPECT_EQ(header.treeType, 1U);
    EXPECT_EQ(header.minimumDistance, 0.25);
    EXPECT_EQ(header.largestNodeCount, 5U);
    EXPECT_TRUE(header.flag);
    EXPECT_THAT((std::array{header.maxRed, header.maxGreen, header.maxBlue}),
                ElementsAre(255, 254, 253));
    EXPECT_EQ(header.maxIntensity, 99.5);
    EXPECT_THAT(header.furtherDoubles, ElementsAre(1, 1, 1, 0, 0, 0));
    EXPECT_EQ(header.hostValue, 6U);
    EXPECT_EQ(header.nodeRecordsWord, image.firstRecord());
    EXPECT_EQ(header.pointDataWord, image.pointData());
    EXPECT_THAT(header.sourceNames,
                ElementsAre(wxString("a"), wxString::FromUTF8("\u00e9t\u00e9\U0001D518")));
    EXPECT_EQ(header.sourceNameBytes, 8U + 8 + 4 + 8 + 4 * 4);
    EXPECT_EQ(header.pointRecordSize, 54U);
    EXPECT_THAT(header.nodeCounts, ElementsAre(1, 2, 1));
    EXPECT_EQ(header.firstNodeRecord, image.firstRecord());
}

TEST_F(VpcDiskTreeQuerierTest, FindsEveryMemberOfEveryNode) {
    write(image.bytes);
    VpcDiskTreeQuerier querier(name());
    for (std::size_t n = 0; n < image.nodes.size(); ++n) {
        const TreeImage::Node& node = image.nodes[n];
        const unsigned long long index = indexOf(n);
        SCOPED_TRACE(n);
        EXPECT_EQ(querier.getOffsetHeaderNode(node.level, index), node.members[0]);
        for (int member = 0; member < 17; ++member)
            EXPECT_EQ(querier.getOffsetHeaderMember(node.level, index,
                                                    static_cast<offsetHeaderMemberType>(member)),
                      node.members[static_cast<std::size_t>(member)])
                << member;
        EXPECT_EQ(querier.getOffsetHeaderMember(node.level, index,
                                                static_cast<offsetHeaderMemberType>(-1)),
                  node.members[0]);
        EXPECT_EQ(querier.getOffsetHeaderMember(node.level, index,
                                                static_cast<offsetHeaderMemberType>(17)),
                  node.members[16]);
        EXPECT_EQ(querier.getOffsetPointBlock(node.level, index), node.members[12]);
        EXPECT_EQ(querier.getOffsetPointList(node.level, index), node.members[13]);
        EXPECT_EQ(querier.nodeNrPoints(node.level, index), node.points);
        OdGePoint3d min;
        OdGePoint3d max;
        ASSERT_TRUE(querier.nodeExtents(node.level, index, min, max));
        EXPECT_EQ(min, OdGePoint3d(node.low[0], node.low[1], node.low[2]));
        EXPECT_EQ(max, OdGePoint3d(node.high[0], node.high[1], node.high[2]));
    }
    EXPECT_EQ(querier.getOffsetPointData(), image.pointData());
    OdGePoint3d min;
    OdGePoint3d max;
    ASSERT_TRUE(querier.rootNodeExtents(min, max));
    EXPECT_EQ(max, OdGePoint3d(4, 2, 2));
    EXPECT_EQ(querier.getOffsetHeaderNode(3, 0), 0U) << "there is no such level";
}

TEST_F(VpcDiskTreeQuerierTest, ComputesTheSizesThatTheFormatStates) {
    const TreeImage plain{{}};
    EXPECT_EQ(plain.firstRecord(), 143U + 8 * 3);
    EXPECT_EQ(image.nodes[3].members[0] - image.nodes[2].members[0], 184U + 48) << "empty leaf";
    EXPECT_EQ(image.pointData() - image.nodes[3].members[0], 184U + 48 * 2 + 24 + 16)
        << "pushed-down leaf";
    write(plain.bytes);
    EXPECT_EQ(VpcDiskTreeQuerier(name()).getOffsetHeaderNode(0, 0), 143U + 8 * 3);
}

TEST_F(VpcDiskTreeQuerierTest, LooksForTheExtensionVptWhateverItIsGiven) {
    write(image.bytes);
    for (const char* given : {"tree.vpt", "tree.pts", "tree"}) {
        EXPECT_TRUE(VpcDiskTreeQuerier(name(given)).isOpen()) << given;
        EXPECT_EQ(VpcDiskTreeQuerier::vptVersion(name(given)), 9U) << given;
    }
    VpcDiskTreeQuerier missing(name("none.vpt"));
    OdGePoint3d min(1, 2, 3);
    OdGePoint3d max;
    EXPECT_FALSE(missing.isOpen());
    EXPECT_FALSE(missing.rootNodeExtents(min, max));
    EXPECT_EQ(min, OdGePoint3d(1, 2, 3));
    EXPECT_EQ(VpcDiskTreeQuerier::vptVersion(name("none.vpt")), 0U);
}

TEST_F(VpcDiskTreeQuerierTest, ReaderGivesEveryRecordAsItStands) {
    write(image.bytes);
    const VpcDiskTreeQuerier querier(name());
    vpc::NodeRecordReader reader(querier.fileName(), querier.header());
    vpc::NodeRecord record;
    for (std::size_t n = 0; n < image.nodes.size(); ++n) {
        const TreeImage::Node& node = image.nodes[n];
        SCOPED_TRACE(n);
        ASSERT_TRUE(reader.Next(record));
        EXPECT_EQ(record.level, node.level);
        EXPECT_EQ(record.index, indexOf(n));
        EXPECT_EQ(record.position, node.members[0]);
        EXPECT_EQ(record.levelWord, node.level);
        EXPECT_EQ(record.minimumDistance, 0.5);
        EXPECT_EQ(record.indexPath.size(), node.level + 1);
        EXPECT_EQ(record.indexPath.back()[0], n == 2 ? 1U : 0U);
        EXPECT_THAT(record.gridPath.front(), ElementsAre(1, 1, 1));
        EXPECT_EQ(record.boxMinimum, node.low);
        EXPECT_EQ(record.boxMaximum, node.high);
        EXPECT_EQ(record.points, node.points);
        EXPECT_EQ(record.cellWidths.size(), node.grid[0] + node.grid[1] + node.grid[2]);
        EXPECT_EQ(record.recordPosition, node.members[0]);
        EXPECT_EQ(record.pointBlock, node.block);
        EXPECT_EQ(record.pointList, node.block + 16);
        EXPECT_EQ(record.parentRecord, n == 0 ? 0 : image.nodes[n == 3 ? 1 : 0].members[0]);
        ASSERT_EQ(record.children.size(), node.grid[0] * node.grid[1] * node.grid[2]);
        for (std::size_t child = 0; child < node.children.size(); ++child)
            EXPECT_EQ(record.children[child].pointBlock, image.nodes[node.children[child]].block);
    }
    EXPECT_FALSE(reader.Next(record));
    EXPECT_FALSE(reader.Failed());
    EXPECT_EQ(reader.Position(), image.pointData());
}

/// Asks everything and holds the answers against the file's size.
void expectAnswersWithin(VpcDiskTreeQuerier& querier, unsigned long long size) {
    for (unsigned long long level : {0ULL, 1ULL, 2ULL, 5ULL, ~0ULL})
        for (unsigned long long index : {0ULL, 1ULL, 1000000ULL}) {
            EXPECT_LE(querier.getOffsetHeaderNode(level, index), size);
            EXPECT_LE(querier.getOffsetHeaderMember(level, index, OffsetHeaderChildEntries), size);
            querier.nodeNrPoints(level, index);
            OdGePoint3d min;
            OdGePoint3d max;
            querier.nodeExtents(level, index, min, max);
        }
    EXPECT_LE(querier.getOffsetPointData(), size);
    vpc::NodeRecordReader reader(querier.fileName(), querier.header());
    vpc::NodeRecord record;
    while (reader.Next(record)) EXPECT_LE(record.position + record.size, size);
    EXPECT_EQ(reader.Failed(), querier.isOpen() && querier.getOffsetPointData() == 0);
}

TEST_F(VpcDiskTreeQuerierTest, EveryTruncationIsNoticed) {
    for (std::size_t length = 0; length < image.bytes.size(); ++length) {
        SCOPED_TRACE(length);
        write(image.bytes.substr(0, length));
        VpcDiskTreeQuerier querier(name());
        expectAnswersWithin(querier, length);
        EXPECT_EQ(querier.getOffsetPointData(), length < image.pointData() ? 0 : image.pointData());
        EXPECT_EQ(querier.isOpen(), querier.fault().empty());
    }
}

TEST_F(VpcDiskTreeQuerierTest, DamagedBytesLeadNowhere) {
    std::mt19937 random(7);
    const std::array<unsigned long long, 6> words = {
        0, 1, ~0ULL, 1ULL << 63, 0x5555555555555556ULL, 0x100000001ULL};
    for (int round = 0; round < 1500; ++round) {
        TreeImage damaged = image;
        const auto last = static_cast<unsigned>(image.pointData());
        for (unsigned change = 0; change <= random() % 3; ++change) {
            if (random() % 2 == 0)
                damaged.bytes[random() % last] = static_cast<char>(random());
            else
                damaged.patch(random() % last, words[random() % words.size()]);
        }
        write(damaged.bytes);
        VpcDiskTreeQuerier querier(name());
        expectAnswersWithin(querier, damaged.bytes.size());
    }
    // Sizes whose product or sum would overflow.
    for (const std::size_t member : {7U, 8U, 9U}) {
        TreeImage damaged = image;
        damaged.patch(image.nodes[0].members[member], 1ULL << 63);
        write(damaged.bytes);
        VpcDiskTreeQuerier querier(name());
        EXPECT_EQ(querier.getOffsetHeaderNode(1, 0), 0U);
        EXPECT_EQ(querier.nodeNrPoints(0, 0), 0U);
    }
}

}  // namespace
