#pragma once

#include <functional>
#include <span>

namespace vpc {

class PointTreeReader;

/// The points of one level of a tree file, as they are read one after the other. However large the
/// level or a node of it is, they take no more than a few megabytes of memory.
class LevelPoints {
public:
    /// Takes whole point records, one after the other; they are valid until it returns. What it
    /// throws ends the reading.
    using Visit = std::function<void(std::span<const char> records)>;

    /// How many points the level's records claim. Throws IoError where a record cannot be read.
    static unsigned long long Count(PointTreeReader& file, unsigned long long level);
    /// Shows the points of the level's nodes to `visit`, in the order of the file. Throws IoError
    /// where the file does not hold what its header and its records claim.
    static void ForEach(PointTreeReader& file, unsigned long long level, const Visit& visit);
};

}  // namespace vpc
