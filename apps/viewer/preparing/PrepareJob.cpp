#include "viewer/preparing/PrepareJob.h"

namespace vpc::viewer {

std::string PrepareJob::StateName() const {
    switch (state) {
        case State::Waiting:
            return "waiting";
        case State::Running:
            return "running";
        case State::Done:
            return "done";
        case State::Failed:
            return "failed";
        default:
            return "cancelled";
    }
}

std::vector<std::string> PrepareJob::Arguments() const {
    std::vector<std::string> arguments = {"prepare",
                                          "--quiet",
                                          "--progress",
                                          "json",
                                          "--json",
                                          "--tree",
                                          tree,
                                          "--unit",
                                          unit,
                                          "--max-points",
                                          std::to_string(maxPoints),
                                          "-o",
                                          target};
    if (allowIncomplete) arguments.emplace_back("--allow-incomplete");
    arguments.insert(arguments.end(), scans.begin(), scans.end());
    return arguments;
}

std::string PrepareJob::TargetFor(const std::string& scan) {
    constexpr const char* extension = ".vpt";
    const std::size_t name = scan.rfind('/') == std::string::npos ? 0 : scan.rfind('/') + 1;
    const std::size_t dot = scan.rfind('.');
    // A dot at the beginning hides a file.
    const bool hasExtension = dot != std::string::npos && dot > name;
    return scan.substr(0, hasExtension ? dot : scan.size()) + extension;
}

}  // namespace vpc::viewer
