#pragma once

#include <memory>
#include <optional>

#include "core/util/DirectRanges.h"
#include "core/util/FileBufferStream.h"
#include "tree/construct/SamplePattern.h"
#include "tree/construct/VpcConstructNode.h"

namespace vpc {

/// The point block of one node in the tree file while it is written. The points may come in
/// pieces; those that the parent's level keeps are passed on to the parent's block.
class PointBlock {
public:
    /// \param direct  writes most of the block past the system's cache; null where it may not
    /// \param parent  receives the samples; null where they are already in the parent's node
    /// \param pattern which points are passed on; not used without a parent
    PointBlock(FileBufferStream& stream, DirectRanges* direct, const VpcConstructNode& node,
               PointBlock* parent, SamplePattern* pattern);

    /// Writes the next `count` records and passes on the samples among them.
    void Write(const char* records, unsigned long long count);
    /// Takes one record, to be written with others.
    void Collect(const char* record);
    /// Writes what Collect has taken and what else is left.
    void Finish();
    /// Whether as many points came as the node counts.
    bool IsComplete() const { return written_ == node_.PointsOnDisk(); }

private:
    void WriteCollected();
    void WriteHeader();
    void WriteBytes(const char* bytes, unsigned long long size);

    FileBufferStream& stream_;
    DirectRanges* direct_;
    std::optional<DirectRange> range_;
    const VpcConstructNode& node_;
    PointBlock* parent_;
    SamplePattern* pattern_;
    /// Where the stream's next bytes go in the file.
    unsigned long long position_;
    unsigned long long written_ = 0;
    unsigned long long collected_ = 0;
    std::unique_ptr<char[]> collection_;
};

}  // namespace vpc
