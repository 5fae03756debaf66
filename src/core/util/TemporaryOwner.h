#pragma once

#include <string>
#include <string_view>

namespace vpc {

/// Marks a temporary file or folder as one that a running process still needs. The mark is a lock
/// of the system, so it goes with the process however that ends. What has no owner any more is a
/// leftover of a run that was killed.
///
/// Where a file system knows no locks nothing is marked, and nothing counts as a leftover.
class TemporaryOwner {
public:
    /// What the names of unfinished results begin with, and those of folders for temporary files.
    static constexpr std::string_view resultPrefix = "vpc-partial-";
    static constexpr std::string_view folderPrefix = "vpc-work-";

    /// Marks what is there under this name, in the system's encoding.
    explicit TemporaryOwner(const std::string& path);
    ~TemporaryOwner();
    TemporaryOwner(const TemporaryOwner&) = delete;
    TemporaryOwner& operator=(const TemporaryOwner&) = delete;

    /// Removes the leftovers in a folder, which are told by their names. Those of the last two
    /// seconds stay: their owners may be about to mark them. A failure leaves them where they are.
    static void RemoveLeftovers(const std::string& folder);

private:
    int descriptor_;
};

}  // namespace vpc
