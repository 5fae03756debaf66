#pragma once

#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include "viewer/preparing/PrepareProgress.h"

namespace vpc::viewer {

/// `vpc prepare` as a process of its own. What it writes is read when Poll is called, so that the
/// window is never busy with it. One thread: the window's.
class PrepareProcess {
public:
    /// Starts the program, without a shell.
    /// \param program   path of `vpc`, UTF-8
    /// \param arguments UTF-8
    PrepareProcess(const std::string& program, const std::vector<std::string>& arguments);
    /// A process that still runs is cancelled and left to end by itself.
    ~PrepareProcess();
    PrepareProcess(const PrepareProcess&) = delete;
    PrepareProcess& operator=(const PrepareProcess&) = delete;

    /// Takes what the program has written since the last call.
    void Poll(PrepareProgress& progress);
    bool HasEnded() const;
    /// What it ended with: an exit status, a signal's number below 0, or notStarted.
    int Status() const;
    static constexpr int notStarted = -1000;

    /// Asks it to end, as Ctrl-C does: it then removes its temporary files.
    void Cancel();
    bool IsCancelled() const { return cancelled_; }
    /// Waits until it is gone, at most that long, and goes on reading meanwhile.
    /// \return whether it is gone
    bool WaitForEnd(PrepareProgress& progress, std::chrono::milliseconds atMost);

private:
    class Child;
    /// wxWidgets deletes it where it outlives this object.
    Child* child_ = nullptr;
    long id_ = 0;
    bool cancelled_ = false;
};

}  // namespace vpc::viewer
