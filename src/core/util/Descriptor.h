#pragma once

#include <cerrno>
#include <string>

#include <fcntl.h>
#include <unistd.h>

namespace vpc {

/// An open file by the system's number for it, closed at the end. Programs that are started
/// meanwhile do not inherit it.
class Descriptor {
public:
    /// \param flags of the system's `open`
    Descriptor(const std::string& path, int flags)
        : number_(open(path.c_str(), flags | O_CLOEXEC)) {}
    ~Descriptor() {
        if (number_ >= 0) close(number_);
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    /// -1 where it could not be opened.
    int Number() const { return number_; }

private:
    int number_;
};

/// Writes all bytes to `position` of an open file, going on after calls that took less than all.
/// Returns 0, or why that failed (errno).
[[nodiscard]] inline int writeAt(int descriptor, const char* data, unsigned long long size,
                                 unsigned long long position) {
    while (size != 0) {
        const ssize_t written = pwrite(descriptor, data, size, static_cast<off_t>(position));
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) return written < 0 ? errno : ENOSPC;
        data += written;
        size -= static_cast<unsigned long long>(written);
        position += static_cast<unsigned long long>(written);
    }
    return 0;
}

}  // namespace vpc
