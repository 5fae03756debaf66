#include "tree/disk/VpcDiskTreeQuerier.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "core/util/StringTools.h"
#include "platform/OdGePoint3d.h"
#include "support/ReaderTools.h"
#include "support/TreeImage.h"

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

}  // namespace
