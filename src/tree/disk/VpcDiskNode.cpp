#include "tree/disk/VpcDiskNode.h"

#include <algorithm>
#include <cstdint>

#include "core/util/ValueAt.h"
#include "platform/OdCmEntityColor.h"
#include "platform/OdGePoint3d.h"
#include "tree/disk/VpcDiskTree.h"

namespace {

using vpc::valueAt;

/// The three arrays from the first free slot on.
struct Slots {
    OdGePoint3d* coords;
    OdCmEntityColor* colors;
    double* sizes;
};

/// The low bytes of the record's channels, with the colour method that the slot has already.
std::uint32_t packedColour(const char* record, std::uint32_t slot) {
    const auto channel = [record](unsigned offset) {
        return static_cast<std::uint32_t>(valueAt<std::uint16_t>(record + offset) & 0xFF);
    };
    return (slot & 0xFF000000U) | channel(VpcPoint3D::recordOffsetRed) << 16 |
           channel(VpcPoint3D::recordOffsetGreen) << 8 | channel(VpcPoint3D::recordOffsetBlue);
}

/// Takes from every record what is drawn, without building the whole point. Leaves out the points
/// that `passes` refuses. Returns how many slots were filled, `room` at most.
template <class Filter>
unsigned long long decode(std::span<const char> records, const Slots& slots,
                          unsigned long long room, const Filter& passes) {
    unsigned long long kept = 0;
    const char* const end = records.data() + records.size();
    for (const char* record = records.data(); record != end && kept < room;
         record += VpcPoint3D::recordSize) {
        const auto x = valueAt<double>(record + VpcPoint3D::recordOffsetX);
        const auto y = valueAt<double>(record + VpcPoint3D::recordOffsetY);
        const auto z = valueAt<double>(record + VpcPoint3D::recordOffsetZ);
        if (!passes(x, y, z)) continue;
        OdGePoint3d& point = slots.coords[kept];
        point.x = x;
        point.y = y;
        point.z = z;
        OdCmEntityColor& colour = slots.colors[kept];
        colour.setColor(packedColour(record, colour.color()));
        const auto distance = valueAt<double>(record + VpcPoint3D::recordOffsetScannerDistance);
        slots.sizes[kept] = distance >= 1.0 ? distance : 1.0;
        ++kept;
    }
    return kept;
}

/// Calls `read` with a filter that lets the points pass which the tree shows.
template <class Read>
unsigned long long withFilterOf(const VpcTree& tree, const Read& read) {
    if (!tree.FiltersPoints()) return read([](double, double, double) { return true; });
    return read([&tree](double x, double y, double z) { return tree.Passes(x, y, z); });
}

}  // namespace

VpcDiskNode::VpcDiskNode(VpcDiskTree* ownerTree, VpcDiskNode* parentNode, const Triplet& index,
                         const Triplet& grid, const vpc::BoxCorners& nodeBox,
                         unsigned long long record, unsigned long long block,
                         unsigned long long pointsPosition, unsigned long long pointCount)
    : box(nodeBox),
      density(static_cast<double>(pointCount) / nodeBox.SquaredDiagonal()),
      recordPosition(record),
      pointBlock(block),
      pointsOffset(pointsPosition),
      tree(ownerTree),
      parent(parentNode),
      hNodeIndex(parentNode == nullptr ? nullptr : &parentNode->hNodeIndex, index),
      hNrNodes(parentNode == nullptr ? nullptr : &parentNode->hNrNodes, grid),
      nrPoints(pointCount) {
    tree->AddToLevel(*this);
}

std::span<const double> VpcDiskNode::SplitCoordinates(int axis) const {
    if (axis == 0) return splitCoordinates.subspan(0, childGrid.x);
    if (axis == 1) return splitCoordinates.subspan(childGrid.x, childGrid.y);
    return splitCoordinates.subspan(childGrid.x + childGrid.y, childGrid.z);
}

VpcDiskNode* VpcDiskNode::GetNodeFromIndex(const VpcNodeIndex& path) {
    unsigned long long level = hNodeIndex.size();
    if (path.size() < level) return nullptr;
    VpcDiskNode* node = this;
    for (; level < path.size() && node != nullptr; ++level) {
        const Triplet& step = path[level];
        node = node->GetChildNodeFromTriplet(step.first, step.second, step.third);
    }
    return node;
}

unsigned long long VpcDiskNode::AddPointsFromDisk(unsigned long long firstSlot, OdGePoint3d* coords,
                                                  OdCmEntityColor* colors, double* sizes,
                                                  unsigned long long maxCount,
                                                  unsigned long long capacity) {
    if (nrPoints == 0 || firstSlot >= capacity) return 0;
    const unsigned long long room = std::min(maxCount, capacity - firstSlot);
    if (room == 0) return 0;
    const std::span<const char> records = tree->ReadPointRecords(pointsOffset, nrPoints);
    const Slots slots{coords + firstSlot, colors + firstSlot, sizes + firstSlot};
    return withFilterOf(*tree,
                        [&](const auto& passes) { return decode(records, slots, room, passes); });
}

unsigned long long VpcDiskNode::AppendIntensities(std::vector<double>& intensities,
                                                  unsigned long long maxCount) const {
    const std::span<const char> records = tree->ReadPointRecords(pointsOffset, nrPoints);
    return withFilterOf(*tree, [&](const auto& passes) {
        unsigned long long appended = 0;
        for (std::size_t at = 0; at < records.size() && appended < maxCount;
             at += VpcPoint3D::recordSize) {
            const char* const record = &records[at];
            if (!passes(valueAt<double>(record + VpcPoint3D::recordOffsetX),
                        valueAt<double>(record + VpcPoint3D::recordOffsetY),
                        valueAt<double>(record + VpcPoint3D::recordOffsetZ)))
                continue;
            intensities.push_back(valueAt<double>(record + VpcPoint3D::recordOffsetIntensity));
            ++appended;
        }
        return appended;
    });
}
