#pragma once

#include <exception>
#include <optional>
#include <string>
#include <vector>

#include "draw/ImageSize.h"
#include "viewer/drawing/RendererChoice.h"

namespace vpc::viewer {

/// What the program was started with.
struct CommandLine {
    /// Tree files, sessions and scans, as typed.
    std::vector<std::string> files;
    /// A session that is opened before the files; empty for none.
    std::string sessionFile;
    RendererChoice renderer = RendererChoice::Auto;
    /// Of the window without its frame.
    std::optional<draw::ImageSize> windowSize;
    /// Where the report goes; empty for none.
    std::string reportFile;
    /// Empty: beside the program.
    std::string pluginFile;
    std::optional<unsigned long long> pointBudget;

    /// Ends the program at once, before there is a window.
    class Ended : public std::exception {
    public:
        explicit Ended(int status) : status_(status) {}
        int Status() const { return status_; }

    private:
        int status_;
    };

    /// Throws Ended after it has printed the help, the version, or what is wrong (status 2).
    static CommandLine Parse(int argc, char** argv);
};

}  // namespace vpc::viewer
