#pragma once

#include <wx/file.h>
#include <wx/string.h>

/// The process-wide run log: lines of "[local time]\t text\r\n" in UTF-8, each on disk when Add
/// returns. Logging never fails visibly: a closed log swallows everything, and write errors are
/// not reported. One thread at a time.
class VpcLogger {
public:
    VpcLogger(const VpcLogger&) = delete;
    VpcLogger& operator=(const VpcLogger&) = delete;

    /// File position where the line written last begins.
    unsigned long long lastLineStart = 0;
    /// File position after that line.
    unsigned long long endPosition = 0;

    /// The one logger. The first call creates it with a closed log; it is never destroyed.
    static VpcLogger* Instance();

    /// Starts a log, overwriting an older file, and the process timer. Does nothing while a log is
    /// open.
    void Open(const wxString& path);
    bool IsOpen() const { return file_.IsOpened(); }
    /// Adds a line, or writes it over the last one. The file is not cut off: where the last line
    /// was longer, its end remains behind the new one.
    void Add(const wxString& text, bool replaceLastLine = false);
    /// Stops the process timer, adds a line with its time, and closes the file.
    void Close();
    /// Reserved; does nothing.
    void logMemUse() {}

private:
    VpcLogger() = default;

    wxFile file_;
};
