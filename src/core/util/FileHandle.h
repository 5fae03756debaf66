#pragma once

#include <cstdio>
#include <memory>

namespace vpc {

/// Closes a C stream. Whoever has to know whether closing worked releases the handle and calls
/// fclose.
struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

/// An open C stream; null when there is none.
using FileHandle = std::unique_ptr<std::FILE, FileCloser>;

}  // namespace vpc
