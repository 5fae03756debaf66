#pragma once

#include <algorithm>
#include <functional>
#include <vector>

#include "core/geometry/VpcPoint3D.h"
#include "tree/file/FileWindow.h"
#include "tree/file/NodeRecord.h"
#include "tree/file/PointTreeReader.h"

namespace vpc {

/// The nodes of a tree file's deepest level that have points, and these points: every point of the
/// scans once. Call Add with every record in file order.
class DeepestLevel {
public:
    struct Node {
        NodeRecord::Coordinates boxMinimum;
        NodeRecord::Coordinates boxMaximum;
        unsigned long long points;
        unsigned long long pointList;
    };

    /// Throws IoError where the file has point records of another size.
    /// \param file must outlive this object
    explicit DeepestLevel(PointTreeReader& file);

    /// Throws IoError where the points of the record do not lie within the file.
    void Add(const NodeRecord& record);
    const std::vector<Node>& Nodes() const { return nodes_; }
    /// Points of all nodes.
    unsigned long long Points() const { return points_; }

    /// Is called with the number of points that have been read since the last call; what it throws
    /// ends the reading.
    using Watcher = std::function<void(unsigned long long)>;

    /// Calls `visit` with the record of each of the node's points. Throws IoError where they cannot
    /// be read.
    template <class Visit>
    void ForEachPoint(const Node& node, const Watcher& watcher, const Visit& visit) {
        for (unsigned long long done = 0; done < node.points;) {
            const unsigned long long count = std::min(pointsAtATime, node.points - done);
            const char* const bytes = window_.Bytes(node.pointList + done * VpcPoint3D::recordSize,
                                                    count * VpcPoint3D::recordSize);
            for (unsigned long long i = 0; i < count; ++i)
                visit(bytes + i * VpcPoint3D::recordSize);
            done += count;
            watcher(count);
        }
    }

private:
    static constexpr unsigned long long pointsAtATime = 16384;

    PointTreeReader& file_;
    FileWindow window_;
    unsigned long long room_;
    unsigned long long points_ = 0;
    std::vector<Node> nodes_;
};

}  // namespace vpc
