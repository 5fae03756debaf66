#pragma once

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

}  // namespace vpc
