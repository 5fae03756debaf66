#include "core/util/TemporaryOwner.h"

#include <array>
#include <cerrno>
#include <charconv>
#include <csignal>
#include <filesystem>
#include <system_error>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vpc {

namespace {

namespace fs = std::filesystem;

std::string machineName() {
    std::array<char, 256> name{};
    if (gethostname(name.data(), name.size() - 1) != 0) return "unknown";
    return name.data();
}

/// Whether a name is one that a process of this machine has made which is there no more.
bool isOfEndedProcess(std::string_view name, std::string_view prefix) {
    const std::string start = std::string(prefix) + machineName() + "-";
    if (!name.starts_with(start)) return false;
    name.remove_prefix(start.size());
    pid_t process = 0;
    const auto number = std::from_chars(name.data(), name.data() + name.size(), process);
    const bool isWhole = number.ec == std::errc() && process > 0 &&
                         number.ptr != name.data() + name.size() && *number.ptr == '-';
    return isWhole && kill(process, 0) != 0 && errno == ESRCH;
}

bool isLocked(const fs::path& path) {
    const int descriptor = open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOFOLLOW | O_CLOEXEC);
    if (descriptor < 0) return true;
    const bool isFree = flock(descriptor, LOCK_EX | LOCK_NB) == 0;
    close(descriptor);
    return !isFree;
}

bool isLeftover(const fs::path& path) {
    struct stat status = {};
    if (lstat(path.c_str(), &status) != 0 || status.st_uid != geteuid()) return false;
    const std::string name = path.filename().string();
    const bool isOfItsKind = S_ISDIR(status.st_mode)
                                 ? isOfEndedProcess(name, TemporaryOwner::folderPrefix)
                                 : S_ISREG(status.st_mode) &&
                                       name.ends_with(TemporaryOwner::resultEnd) &&
                                       isOfEndedProcess(name, TemporaryOwner::resultPrefix);
    return isOfItsKind && !isLocked(path);
}

}  // namespace

std::string TemporaryOwner::NameStart(std::string_view prefix) {
    return std::string(prefix) + machineName() + "-" + std::to_string(getpid()) + "-";
}

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
        std::error_code ignored;  // nothing depends on its going
        if (isLeftover(entries->path())) fs::remove_all(entries->path(), ignored);
    }
}

}  // namespace vpc
