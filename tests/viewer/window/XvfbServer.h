#pragma once

#include <sys/types.h>

#include <string>

namespace vpc::test {

/// An X server that shows nothing, with a screen of 1600 by 1000 pixels. It ends with this object,
/// and with the process however that ends.
class XvfbServer {
public:
    /// Waits until clients can connect. Throws std::runtime_error where the server does not start.
    XvfbServer();
    XvfbServer(const XvfbServer&) = delete;
    XvfbServer& operator=(const XvfbServer&) = delete;
    ~XvfbServer();

    /// As the variable DISPLAY names it.
    const std::string& Display() const { return display_; }

private:
    pid_t server_ = -1;
    std::string display_{":"};
};

}  // namespace vpc::test
