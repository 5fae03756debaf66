#pragma once

#include <string>
#include <vector>

#include "viewer/preparing/PrepareProgress.h"

namespace vpc::viewer {

/// A preparation: what the user wants, and how far it has come. Texts are UTF-8.
struct PrepareJob {
    enum class State { Waiting, Running, Done, Failed, Cancelled };

    /// Given by the queue; 1 and up, never used twice.
    int id = 0;
    /// Absolute paths.
    std::vector<std::string> scans;
    /// The tree file, as an absolute path.
    std::string target;
    /// As `vpc prepare --tree` takes it: octree or kd.
    std::string tree = "octree";
    /// As `vpc prepare --unit` takes it.
    std::string unit = "auto";
    unsigned long long maxPoints = 10000;
    /// Goes on with the points that are there when some are missing or cannot be read.
    bool allowIncomplete = false;

    State state = State::Waiting;
    /// Running, and asked to end.
    bool cancelling = false;
    PrepareProgress progress;
    /// A sentence, where it failed.
    std::string problem;

    bool HasEnded() const { return state != State::Waiting && state != State::Running; }
    /// "waiting", "running", "done", "failed" or "cancelled".
    std::string StateName() const;
    /// What `vpc` is called with.
    std::vector<std::string> Arguments() const;

    /// The tree file that is proposed for scans: beside the first one, NAME.vpt.
    static std::string TargetFor(const std::string& scan);
};

}  // namespace vpc::viewer
