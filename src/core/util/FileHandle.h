#pragma once

#include <cstdio>
#include <memory>

namespace vpc {

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

}  // namespace vpc
