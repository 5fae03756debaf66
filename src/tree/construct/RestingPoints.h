#pragma once

#include <functional>
#include <string>

#include "tree/construct/RecordBlock.h"

namespace vpc {

/// Points of one node that have left memory.
///
/// There are two ways to keep them: a named file for every node (NodeFile), which can be looked at
/// between two calls, and pieces of one file for all nodes (SpilledPoints), which is faster by far.
class RestingPoints {
public:
    using Visitor = std::function<void(const RecordBlock& block)>;

    RestingPoints() = default;
    RestingPoints(const RestingPoints&) = delete;
    RestingPoints& operator=(const RestingPoints&) = delete;
    /// Removes the points.
    virtual ~RestingPoints() = default;

    /// Adds the points of a chain of blocks, which may be empty. Throws vpc::IoError when they
    /// cannot be written; those added before stay.
    virtual void Append(const RecordBlock* first) = 0;
    /// Calls `visit` with all points in order. With `giveBack`, the room of what was visited is
    /// given back on the way, and nothing may follow but the end. Throws vpc::IoError when they
    /// cannot be read whole.
    virtual void Visit(const Visitor& visit, bool giveBack) = 0;
    /// Renames the node's own file, if it has one, whose name is `oldPath`. Throws vpc::IoError
    /// when that fails.
    virtual void Rename(const std::string& oldPath, const std::string& newPath) = 0;
    /// The node's own file; empty where it has none.
    virtual std::string File() const { return {}; }
};

}  // namespace vpc
