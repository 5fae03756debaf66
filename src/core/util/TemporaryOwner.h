#pragma once

#include <string>
#include <string_view>

namespace vpc {

/// Marks a temporary file or folder as one that a running process still needs: by a name with this
/// machine's name and the process's number, and by a lock of the system, which goes with the
/// process however that ends. What has neither owner nor lock any more is a leftover of a run that
/// was killed.
class TemporaryOwner {
public:
    /// What the names of unfinished results begin with, and those of folders for temporary files.
    static constexpr std::string_view resultPrefix = "vpc-partial-";
    static constexpr std::string_view folderPrefix = "vpc-work-";
    /// What the names of unfinished results end with.
    static constexpr std::string_view resultEnd = ".tmp";

    /// How this process's names begin, with one of the prefixes; something that no other name has
    /// must follow.
    static std::string NameStart(std::string_view prefix);

    /// Locks what is there under this name, in the system's encoding.
    explicit TemporaryOwner(const std::string& path);
    ~TemporaryOwner();
    TemporaryOwner(const TemporaryOwner&) = delete;
    TemporaryOwner& operator=(const TemporaryOwner&) = delete;

    /// Removes the leftovers of this user and this machine in a folder. A failure leaves them where
    /// they are.
    static void RemoveLeftovers(const std::string& folder);

private:
    int descriptor_;
};

}  // namespace vpc
