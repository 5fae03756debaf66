#include "core/util/VpcLogger.h"

#include <cstddef>
#include <new>

#include <fcntl.h>

#include <wx/log.h>

#include "core/util/FileTools.h"
#include "core/util/VpcTimer.h"

VpcLogger* VpcLogger::Instance() {
    // Never destroyed, so that whatever ends last may still log; and in static memory, of which
    // nothing is left when a host unloads the plug-in.
    alignas(VpcLogger) static std::byte memory[sizeof(VpcLogger)];
    static VpcLogger* const logger = new (memory) VpcLogger;  // NOLINT
    return logger;
}

void VpcLogger::Open(const wxString& path) {
    if (file_.IsOpened()) return;
    const wxLogNull noPopUps;
    lastLineStart = endPosition = 0;
    VpcTimer::Instance()->Start();
    constexpr mode_t everyoneReadsAndWrites = 0666;
    const int descriptor = open(FileTools::ToNativePath(path).c_str(),
                                O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, everyoneReadsAndWrites);
    if (descriptor >= 0) file_.Attach(descriptor);
    Add("Opened logging");
}

void VpcLogger::Add(const wxString& text, bool replaceLastLine) {
    if (!file_.IsOpened()) return;
    const wxLogNull noPopUps;
    if (replaceLastLine)
        file_.Seek(static_cast<wxFileOffset>(lastLineStart));
    else
        lastLineStart = endPosition;
    file_.Write(VpcTimer::GetCurrentTimeAsString() + "\t " + text + "\r\n");
    endPosition = static_cast<unsigned long long>(file_.Tell());
    file_.Flush();
}

void VpcLogger::Close() {
    if (!file_.IsOpened()) return;
    const wxLogNull noPopUps;
    VpcTimer::Instance()->Stop();
    Add("Closed logging, log file was open for " + VpcTimer::Instance()->ElapsedTimeToString());
    file_.Close();
}
