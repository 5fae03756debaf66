#include "core/util/TemporaryOwner.h"

#include <chrono>
#include <filesystem>
#include <system_error>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace vpc {

namespace {

namespace fs = std::filesystem;

constexpr std::chrono::seconds marksLate(2);

bool hasTemporaryName(const fs::path& path) {
    const std::string name = path.filename().string();
    return name.starts_with(TemporaryOwner::resultPrefix) ||
           name.starts_with(TemporaryOwner::folderPrefix);
}

bool isLeftover(const fs::directory_entry& entry) {
    std::error_code error;
    if (!hasTemporaryName(entry.path()) || entry.is_symlink(error)) return false;
    const auto changed = entry.last_write_time(error);
    if (error || fs::file_time_type::clock::now() - changed < marksLate) return false;
    const int descriptor = open(entry.path().c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0) return false;
    const bool free = flock(descriptor, LOCK_EX | LOCK_NB) == 0;
    close(descriptor);
    return free;
}

}  // namespace

TemporaryOwner::TemporaryOwner(const std::string& path)
    : descriptor_(open(path.c_str(), O_RDONLY | O_CLOEXEC)) {
    if (descriptor_ >= 0) flock(descriptor_, LOCK_EX | LOCK_NB);
}

TemporaryOwner::~TemporaryOwner() {
    if (descriptor_ >= 0) close(descriptor_);
}

void TemporaryOwner::RemoveLeftovers(const std::string& folder) {
    std::error_code error;
    fs::directory_iterator entries(folder.empty() ? fs::path(".") : fs::path(folder), error);
    for (; !error && entries != fs::directory_iterator(); entries.increment(error)) {
        if (!isLeftover(*entries)) continue;
        std::error_code ignored;  // nothing depends on its going
        fs::remove_all(entries->path(), ignored);
    }
}

}  // namespace vpc
