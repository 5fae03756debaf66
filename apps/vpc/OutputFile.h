#pragma once

#include <string>
#include <vector>

#include "core/util/FileHandle.h"
#include "core/util/ReplacementFile.h"

namespace vpc {

/// A file that appears under its name only when it is whole. Throws CommandError for every
/// failure.
class OutputFile {
public:
    explicit OutputFile(const std::string& path);

    void Write(const char* data, std::size_t size) {
        if (buffer_.size() + size > buffer_.capacity()) Flush();
        buffer_.insert(buffer_.end(), data, data + size);
    }
    void Write(const std::string& text) { Write(text.data(), text.size()); }
    /// Goes back to the start of the file, to write its header anew.
    void Rewind();
    /// Closes the file and gives it its name, in place of an older file.
    void Commit();

private:
    void Flush();
    [[noreturn]] void Fail() const;

    std::string path_;
    ReplacementFile replacement_;
    FileHandle file_;
    std::vector<char> buffer_;
};

}  // namespace vpc
