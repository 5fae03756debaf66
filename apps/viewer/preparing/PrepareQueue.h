#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <wx/timer.h>

#include "viewer/preparing/PrepareJob.h"
#include "viewer/preparing/PrepareProcess.h"

namespace vpc::viewer {

/// Prepares scans one job after the other, each in a process of its own. One thread: the window's.
class PrepareQueue {
public:
    /// \param vpcProgram path of `vpc`; see FindProgram
    /// \param onChanged  called after every change of Jobs(), ten times a second at most
    /// \param onFinished gets the tree file of a job that is done
    PrepareQueue(std::string vpcProgram, std::function<void()> onChanged,
                 std::function<void(const std::string& targetFile)> onFinished);
    /// Cancels what runs, as CancelAll does.
    ~PrepareQueue();
    PrepareQueue(const PrepareQueue&) = delete;
    PrepareQueue& operator=(const PrepareQueue&) = delete;

    /// The program `vpc` beside the viewer, else in the PATH, else just its name.
    static std::string FindProgram();

    /// Puts a job at the end; it starts as soon as those before it have ended.
    /// \return its id
    int Add(PrepareJob job);
    /// A waiting job is cancelled at once, a running one soon: when its process has cleaned up.
    void Cancel(int id);
    /// Forgets a job that has ended.
    void Remove(int id);
    /// In the order of their start.
    const std::vector<PrepareJob>& Jobs() const { return jobs_; }
    /// Whether a job waits or runs.
    bool IsBusy() const;
    /// Whether a job that waits or runs writes this file.
    bool IsTarget(const std::string& file) const;

    /// For the end of the program: cancels all jobs and waits for the running one, a few seconds at
    /// most. Neither callback is called from here on.
    void CancelAll();

    /// What `vpc prepare --unit` takes, as its help lists it: "auto" first. Asks the program when
    /// first called; only "auto" where it cannot be asked.
    const std::vector<std::string>& Units();

private:
    PrepareJob* Find(int id);
    PrepareJob* Running();
    void StartNext();
    void OnTick();
    /// Says how a job has ended.
    void End(PrepareJob& job);
    void Changed() const;

    std::string program_;
    std::function<void()> onChanged_;
    std::function<void(const std::string&)> onFinished_;
    std::vector<PrepareJob> jobs_;
    std::vector<std::string> units_;
    std::unique_ptr<PrepareProcess> process_;
    wxTimer timer_;
    int lastId_ = 0;
};

}  // namespace vpc::viewer
