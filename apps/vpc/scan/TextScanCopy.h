#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

#include "core/util/FileHandle.h"

namespace vpc {

/// A text scan written anew and plainly, as the library's readers take it. Its blocks begin with
/// counts, which are known only when a block ends. IoError is thrown where it cannot be written.
class TextScanCopy {
public:
    explicit TextScanCopy(const std::string& file);

    /// Begins a block: leaves room for so many lines with a count each, one or two, and writes
    /// `rest` after them.
    void BeginBlock(std::size_t countLines, std::string_view rest);
    /// Ends a block; those of the counts that it has no room for are not used.
    void EndBlock(const std::array<unsigned long long, 2>& counts);
    /// The text that is still to be written, to append whole lines to. Call Flow after a line.
    std::string& Text() { return text_; }
    /// Hands the text on to the file when there is much of it.
    void Flow();
    /// Writes what is left and closes the file.
    void Close();

private:
    void Flush();
    [[noreturn]] void Fail() const;

    std::string name_;
    FileHandle file_;
    std::string text_;
    /// Bytes of the file before `text_`.
    unsigned long long written_ = 0;
    std::size_t countLines_ = 0;
    unsigned long long countsPosition_ = 0;
};

}  // namespace vpc
