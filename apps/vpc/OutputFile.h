#pragma once

#include <cstdio>
#include <string>
#include <vector>

namespace vpc {

/// A file that appears under its name only when it is whole: it is written beside it under a
/// temporary name, which goes again where Commit is not reached. Throws CommandError for every
/// failure.
class OutputFile {
public:
    explicit OutputFile(std::string path);
    ~OutputFile();
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    void Write(const char* data, std::size_t size) {
        if (buffer_.size() + size > buffer_.capacity()) Flush();
        buffer_.insert(buffer_.end(), data, data + size);
    }
    void Write(const std::string& text) { Write(text.data(), text.size()); }
    template <class T>
    void WriteValue(T value) {
        Write(reinterpret_cast<const char*>(&value), sizeof value);
    }
    /// Goes back to the start of the file, to write its header anew.
    void Rewind();
    /// Closes the file and gives it its name, in place of an older file.
    void Commit();

private:
    void Flush();
    [[noreturn]] void Fail() const;

    std::string path_;
    std::string temporary_;
    std::FILE* file_ = nullptr;
    std::vector<char> buffer_;
};

}  // namespace vpc
