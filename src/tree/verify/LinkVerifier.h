#pragma once

#include <span>
#include <vector>

#include "tree/file/NodeRecord.h"
#include "tree/verify/Finding.h"

namespace vpc {

/// Checks the links between the nodes of neighbouring levels, in both directions, and that a node
/// fits its parent: its place in the parent's grid, its box, its share of the points. Call Add with
/// every record in file order.
class LinkVerifier {
public:
    /// \param sink must outlive the verifier
    explicit LinkVerifier(const FindingSink& sink) : sink_(sink) {}

    void Add(const NodeRecord& record);
    /// Call this after the last record.
    void Finish();
    /// Points of the fullest node of the level added last.
    unsigned long long LargestNodeOfLevel() const;

private:
    /// What is kept of a node until its children have passed.
    struct Node {
        unsigned long long level = 0;
        unsigned long long index = 0;
        unsigned long long position = 0;
        unsigned long long pointBlock = 0;
        unsigned long long points = 0;
        unsigned long long indexPathHash = 0;
        unsigned long long gridPathHash = 0;
        NodeRecord::Coordinates boxMinimum{};
        NodeRecord::Coordinates boxMaximum{};
        PointTreeLayout::ChildGrid grid;
        /// Where its child entries begin in the level's list of them.
        std::size_t firstEntry = 0;
        unsigned long long childrenSeen = 0;
        unsigned long long childPoints = 0;
    };
    struct Level {
        std::vector<Node> nodes;
        std::vector<NodeRecord::ChildEntry> entries;
        void Clear() {
            nodes.clear();
            entries.clear();
        }
    };

    using Entries = std::span<const NodeRecord::ChildEntry>;

    void CheckRoot(const NodeRecord& record);
    void CheckParent(const NodeRecord& record);
    void CheckPlace(const NodeRecord& record, Node& parent);
    void CheckBox(const NodeRecord& record, const Node& parent, const NodeRecord::Triplet& cell);
    /// Checks all nodes of the level above, whose children have passed.
    void FinishParents(bool deepest);
    void CheckChildren(const Node& node, Entries entries);
    void CheckChainEnd(const Node& node, Entries entries);
    void Keep(const NodeRecord& record);
    Node* Find(Level& level, unsigned long long position);

    const FindingSink& sink_;
    Level parents_;
    Level current_;
    unsigned long long currentLevel_ = 0;
};

}  // namespace vpc
