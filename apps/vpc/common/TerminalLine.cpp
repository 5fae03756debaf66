#include "vpc/common/TerminalLine.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>

namespace vpc {

namespace {

constexpr std::size_t usualWidth = 80;
constexpr std::size_t barWidth = 20;

/// Columns of the terminal that a line may take without wrapping.
std::size_t lineWidth() {
    winsize size = {};
    const bool known = ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return (known ? size.ws_col : usualWidth) - 1;
}

}  // namespace

std::string percentText(double share) {
    return std::to_string(static_cast<int>(std::clamp(share, 0.0, 1.0) * 100.0)) + " %";
}

TerminalLine::TerminalLine() : possible_(isatty(STDERR_FILENO) == 1) {
}

void TerminalLine::Show(double share, const std::string& text) {
    const auto full =
        static_cast<std::size_t>(std::clamp(share, 0.0, 1.0) * static_cast<double>(barWidth));
    std::string line = "[";
    line.append(full, '#').append(barWidth - full, '-').append("] ").append(text);
    line.resize(lineWidth(), ' ');
    std::fprintf(stderr, "\r%s", line.c_str());
    std::fflush(stderr);
    shown_ = true;
}

void TerminalLine::Clear() {
    if (!shown_) return;
    std::fprintf(stderr, "\r%s\r", std::string(lineWidth(), ' ').c_str());
    std::fflush(stderr);
    shown_ = false;
}

}  // namespace vpc
