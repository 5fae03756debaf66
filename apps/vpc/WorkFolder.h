#pragma once

#include <string>

namespace vpc {

/// A new folder of its own for one run's temporary files; it goes with all that is in it when
/// this object does.
class WorkFolder {
public:
    /// Makes the folder within `parent`. Throws CommandError where that cannot be done.
    explicit WorkFolder(const std::string& parent);
    ~WorkFolder();
    WorkFolder(const WorkFolder&) = delete;
    WorkFolder& operator=(const WorkFolder&) = delete;

    /// The folder's path, ending with a separator.
    std::string Path() const { return path_ + "/"; }

private:
    std::string path_;
};

}  // namespace vpc
