#include "viewer/preparing/PrepareQueue.h"

#include <algorithm>
#include <csignal>
#include <utility>

#include <wx/filefn.h>
#include <wx/filename.h>
#include <wx/process.h>
#include <wx/stdpaths.h>
#include <wx/stream.h>
#include <wx/utils.h>

#include "viewer/preparing/ArgumentVector.h"
#include "viewer/preparing/UnitList.h"

namespace vpc::viewer {

namespace {

using State = PrepareJob::State;

constexpr int tickMilliseconds = 100;
/// The program looks for a signal many times a second, but a slow disk may keep it.
constexpr std::chrono::milliseconds patience(5000);
constexpr const char* programName = "vpc";
/// The program's exit status after SIGINT.
constexpr int interruptedStatus = 130;

/// What a program writes to its standard output, however it ends.
std::string outputOf(const std::string& program, const std::vector<std::string>& arguments) {
    wxProcess process(wxPROCESS_REDIRECT);
    const ArgumentVector words(program, arguments);
    if (wxExecute(words.Data(), wxEXEC_BLOCK, &process) == -1) return {};
    std::string output;
    wxInputStream* const stream = process.GetInputStream();
    while (stream != nullptr && stream->CanRead()) {
        const int byte = stream->GetC();
        if (byte == wxEOF) break;
        output += static_cast<char>(byte);
    }
    return output;
}

/// Why a job failed, where the program itself had nothing to say.
std::string problemOf(int status) {
    if (status == PrepareProcess::notStarted)
        return "the program vpc, which prepares scans, cannot be started; it belongs beside the "
               "viewer or into the PATH";
    if (status < 0)
        return "vpc was ended by the system with signal " + std::to_string(-status) +
               "; the memory may not suffice";
    return "vpc failed with exit status " + std::to_string(status);
}

}  // namespace

PrepareQueue::PrepareQueue(std::string vpcProgram, std::function<void()> onChanged,
                           std::function<void(const std::string&)> onFinished)
    : program_(std::move(vpcProgram)),
      onChanged_(std::move(onChanged)),
      onFinished_(std::move(onFinished)) {
    timer_.Bind(wxEVT_TIMER, [this](wxTimerEvent&) { OnTick(); });
}

PrepareQueue::~PrepareQueue() {
    CancelAll();
}

std::string PrepareQueue::FindProgram() {
    wxFileName beside(wxStandardPaths::Get().GetExecutablePath());
    beside.SetFullName(programName);
    if (beside.IsFileExecutable()) return beside.GetFullPath().utf8_string();
    wxPathList path;
    path.AddEnvList("PATH");
    const wxString found = path.FindAbsoluteValidPath(programName);
    return found.empty() ? programName : found.utf8_string();
}

int PrepareQueue::Add(PrepareJob job) {
    job.id = ++lastId_;
    jobs_.push_back(std::move(job));
    StartNext();
    Changed();
    return lastId_;
}

void PrepareQueue::Cancel(int id) {
    PrepareJob* const job = Find(id);
    if (job == nullptr || job->HasEnded()) return;
    if (job->state == State::Waiting) {
        job->state = State::Cancelled;
    } else {
        job->cancelling = true;
        process_->Cancel();
    }
    Changed();
}

void PrepareQueue::Remove(int id) {
    if (std::erase_if(jobs_,
                      [&](const PrepareJob& job) { return job.id == id && job.HasEnded(); }) > 0)
        Changed();
}

bool PrepareQueue::IsBusy() const {
    return !std::all_of(jobs_.begin(), jobs_.end(),
                        [](const PrepareJob& job) { return job.HasEnded(); });
}

bool PrepareQueue::IsTarget(const std::string& file) const {
    return std::any_of(jobs_.begin(), jobs_.end(), [&](const PrepareJob& job) {
        return !job.HasEnded() && job.target == file;
    });
}

void PrepareQueue::CancelAll() {
    onChanged_ = nullptr;
    onFinished_ = nullptr;
    timer_.Stop();
    for (PrepareJob& job : jobs_)
        if (job.state == State::Waiting) job.state = State::Cancelled;
    PrepareJob* const running = Running();
    if (running == nullptr) return;
    process_->Cancel();
    process_->WaitForEnd(running->progress, patience);
    process_.reset();
    running->state = State::Cancelled;
}

const std::vector<std::string>& PrepareQueue::Units() {
    if (units_.size() <= 1) units_ = unitsInHelp(outputOf(program_, {"prepare", "--help"}));
    return units_;
}

PrepareJob* PrepareQueue::Find(int id) {
    const auto job = std::find_if(jobs_.begin(), jobs_.end(),
                                  [&](const PrepareJob& other) { return other.id == id; });
    return job == jobs_.end() ? nullptr : &*job;
}

PrepareJob* PrepareQueue::Running() {
    const auto job = std::find_if(jobs_.begin(), jobs_.end(), [](const PrepareJob& other) {
        return other.state == State::Running;
    });
    return job == jobs_.end() ? nullptr : &*job;
}

void PrepareQueue::StartNext() {
    if (Running() != nullptr) return;
    const auto next = std::find_if(jobs_.begin(), jobs_.end(), [](const PrepareJob& job) {
        return job.state == State::Waiting;
    });
    if (next == jobs_.end()) {
        timer_.Stop();
        return;
    }
    next->state = State::Running;
    process_ = std::make_unique<PrepareProcess>(program_, next->Arguments());
    timer_.Start(tickMilliseconds);
}

void PrepareQueue::OnTick() {
    PrepareJob* const job = Running();
    if (job == nullptr) return;
    // In this order, so that nothing is lost that was written before the end.
    const bool hasEnded = process_->HasEnded();
    process_->Poll(job->progress);
    if (!hasEnded) {
        // A signal is lost that comes before the program listens for it.
        if (job->cancelling) process_->Cancel();
        Changed();
        return;
    }
    End(*job);
    const std::string finished = job->state == State::Done ? job->target : "";
    StartNext();
    Changed();
    if (!finished.empty() && onFinished_) onFinished_(finished);
}

void PrepareQueue::End(PrepareJob& job) {
    job.progress.Finish();
    job.cancelling = false;
    const int status = process_->Status();
    if (status == 0) {
        job.state = State::Done;
    } else if (process_->IsCancelled() && (status == interruptedStatus || status == -SIGINT)) {
        job.state = State::Cancelled;
    } else {
        job.state = State::Failed;
        const std::string& said = job.progress.LastSentence();
        job.problem = said.empty() ? problemOf(status) : said;
    }
    process_.reset();
}

void PrepareQueue::Changed() const {
    if (onChanged_) onChanged_();
}

}  // namespace vpc::viewer
