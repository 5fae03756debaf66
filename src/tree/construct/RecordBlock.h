#pragma once

#include "core/geometry/VpcPoint3D.h"

namespace vpc {

/// Size of one serialised point, in bytes.
inline constexpr unsigned long long recordSize = VpcPoint3D::SerializeDiskSize();

/// Some point records in memory; a node's points are a chain of such blocks.
struct RecordBlock {
    /// Makes a block about as large as a page of memory.
    static constexpr unsigned long long capacity = 75;

    RecordBlock* next = nullptr;
    char records[capacity * recordSize];
};

}  // namespace vpc
