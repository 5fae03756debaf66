#pragma once

#include "tree/file/NodeRecord.h"
#include "vpc/tree/DeepestLevel.h"

namespace vpc {

/// A box along the axes.
struct Bounds {
    NodeRecord::Coordinates minimum{};
    NodeRecord::Coordinates maximum{};

    bool operator==(const Bounds&) const = default;
};

/// Finds the smallest box around all points of a tree file, which its nodes' boxes do not tell:
/// these have margins. It reads as few points as it can, even of the largest file.
///
/// On one side, the nodes that can hold the outermost point are mostly few, and they are read. If
/// this point stands where it should if the root's box was made with the margins of this library's
/// driver, then the margins are known, and so are the other sides. Else the nodes of all sides are
/// read, and where they are the sides of a flat cloud, these can be nearly all nodes.
///
/// A bound is the coordinate of a point to the last bit, unless several numbers give the same side
/// of the root's box, rounded as it is. Then it is the one with the fewest digits.
class MeasuredBounds {
public:
    /// Throws IoError where points cannot be read.
    /// \param root is the result where there are no points
    static Bounds Find(DeepestLevel& level, const Bounds& root,
                       const DeepestLevel::Watcher& watcher);
};

}  // namespace vpc
