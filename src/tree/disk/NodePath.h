#pragma once

#include "core/geometry/VpcNodeIndex.h"

namespace vpc {

/// A node's list of triplets, one for each level from the root down to the node. It holds only the
/// last one and takes the others from the parent's list: otherwise such lists would be most of the
/// memory that a tree of many nodes takes.
class NodePath {
public:
    using Triplet = VpcTriplet<unsigned long long>;

    /// \param parent the parent's list, which must stay where it is; null for the root
    NodePath(const NodePath* parent, const Triplet& own)
        : parent_(parent), size_(parent == nullptr ? 1 : parent->size_ + 1), own_(own) {}
    // A child's list points to this one.
    NodePath(const NodePath&) = delete;
    NodePath& operator=(const NodePath&) = delete;

    unsigned long long size() const { return size_; }
    /// The triplet of `level`, which must be below the size. Walks up from the node.
    const Triplet& operator[](unsigned long long level) const {
        const NodePath* path = this;
        while (path->size_ > level + 1) path = path->parent_;
        return path->own_;
    }
    /// The node's own triplet.
    const Triplet& back() const { return own_; }

    /// The whole list.
    operator VpcNodeIndex() const {
        VpcNodeIndex list;
        list.resize(size_);
        for (const NodePath* path = this; path != nullptr; path = path->parent_)
            list[path->size_ - 1] = path->own_;
        return list;
    }

private:
    const NodePath* parent_;
    unsigned long long size_;
    Triplet own_;
};

}  // namespace vpc
