#pragma once

#include <cstdio>
#include <memory>
#include <string>

namespace vpc {

// Every file is opened with the mode "e", so that the programs that a host or a user's shell starts
// meanwhile do not inherit it: they would keep a deleted file's room on the disk.

/// Closes a C stream. Whoever wants to know whether that worked releases the handle and calls
/// fclose.
struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

/// An open C stream; null when there is none.
using FileHandle = std::unique_ptr<std::FILE, FileCloser>;

/// Asks the system to begin writing to the disk what it holds of the file, and does not wait for
/// it. A file that is written with this now and then is synced in a short time at its end.
void startWriteBack(std::FILE* file);

/// Makes a new file `end` bytes long and has the system set room aside for those from `begin` on,
/// where it can and has as much. What is then written there costs the system much less work.
void preallocate(std::FILE* file, unsigned long long begin, unsigned long long end);

/// Reads up to the next line feed, which is not part of `line`, or up to the file's end. Takes no
/// file as one without lines. Returns false where there was nothing left to read.
bool readLine(std::FILE* file, std::string& line);

}  // namespace vpc
