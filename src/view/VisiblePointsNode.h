#pragma once

class VpcDiskNode;

/// A tree node whose points are in the point buffers, and the slots that they take.
struct VisiblePointsNode {
    unsigned long long firstSlot = 0;
    /// The slot of the last point, not the one behind it.
    unsigned long long lastSlot = 0;
    /// Not owned.
    VpcDiskNode* node = nullptr;
};
