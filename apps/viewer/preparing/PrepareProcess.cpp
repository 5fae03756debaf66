#include "viewer/preparing/PrepareProcess.h"

#include <sys/types.h>

#include <array>
#include <csignal>
#include <thread>

#include <wx/app.h>
#include <wx/filename.h>
#include <wx/process.h>
#include <wx/stream.h>
#include <wx/utils.h>

#include "viewer/preparing/ArgumentVector.h"

namespace vpc::viewer {

class PrepareProcess::Child : public wxProcess {
public:
    Child() { Redirect(); }

    void OnTerminate(int /*pid*/, int status) override {
        // wxWidgets takes an exit status for a signed byte, and signals below 0 as well.
        constexpr int lastSignal = 64;
        hasEnded_ = true;
        status_ = status < -lastSignal ? status + 256 : status;
        if (isAlone_) delete this;  // wxWidgets leaves that to us
    }
    /// Its owner goes; it deletes itself when the process has ended.
    void LeaveAlone() { isAlone_ = true; }
    bool HasEnded() const { return hasEnded_; }
    int Status() const { return status_; }

private:
    bool hasEnded_ = false;
    bool isAlone_ = false;
    int status_ = notStarted;
};

namespace {

/// Calls `take` with what can be read without waiting, but not with so much that the window waits.
template <class Take>
void drain(wxInputStream* stream, const Take& take) {
    std::array<char, 65536> bytes;
    for (int i = 0; i < 16 && stream != nullptr && stream->CanRead(); ++i) {
        stream->Read(bytes.data(), bytes.size());
        if (stream->LastRead() == 0) return;
        take(std::string_view(bytes.data(), stream->LastRead()));
    }
}

}  // namespace

PrepareProcess::PrepareProcess(const std::string& program,
                               const std::vector<std::string>& arguments) {
    if (!wxFileName::IsFileExecutable(wxString::FromUTF8(program))) return;
    const ArgumentVector words(program, arguments);
    child_ = new Child;  // deleted by the destructor, or by itself where the process lives on
    id_ = wxExecute(words.Data(), wxEXEC_ASYNC, child_);
    if (id_ != 0) return;
    delete child_;
    child_ = nullptr;
}

PrepareProcess::~PrepareProcess() {
    if (child_ == nullptr) return;
    Cancel();
    if (HasEnded())
        delete child_;
    else
        child_->LeaveAlone();
}

void PrepareProcess::Poll(PrepareProgress& progress) {
    if (child_ == nullptr) return;
    drain(child_->GetInputStream(), [&](std::string_view bytes) { progress.TakeOutput(bytes); });
    drain(child_->GetErrorStream(), [&](std::string_view bytes) { progress.TakeErrors(bytes); });
}

bool PrepareProcess::HasEnded() const {
    return child_ == nullptr || child_->HasEnded();
}

int PrepareProcess::Status() const {
    return child_ == nullptr ? notStarted : child_->Status();
}

void PrepareProcess::Cancel() {
    if (HasEnded()) return;
    cancelled_ = true;
    kill(static_cast<pid_t>(id_), SIGINT);
}

bool PrepareProcess::WaitForEnd(PrepareProgress& progress, std::chrono::milliseconds atMost) {
    constexpr std::chrono::milliseconds step(10);
    for (auto waited = step; !HasEnded() && waited <= atMost; waited += step) {
        std::this_thread::sleep_for(step);
        Poll(progress);
        // Has wxWidgets see which processes have ended, as its event loop does.
        wxTheApp->CheckSignal();
    }
    return HasEnded();
}

}  // namespace vpc::viewer
