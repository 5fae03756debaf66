#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

#include "core/util/FileHandle.h"

namespace vpc {

/// Hands out the lines of a text file one after the other. They end at a line feed, or at a
/// carriage return where the file has no line feeds.
class TextLines {
public:
    /// How long a line may be: far longer than any line of numbers.
    static constexpr std::size_t longest = std::size_t{1} << 20;

    /// Throws IoError where the file cannot be opened.
    explicit TextLines(const std::string& file);

    /// Goes to the next line; false at the text's end. Throws IoError where the file cannot be read
    /// on, and ScanFault for a line that is too long.
    bool Next();
    /// The line without its end and without a byte order mark. At least eight bytes may be read
    /// from any place within it on. Valid until the next call of Next.
    std::string_view Line() const { return line_; }
    /// The line's number, from 1.
    unsigned long long Number() const { return number_; }
    /// Bytes read so far; it grows by a block at a time.
    unsigned long long BytesRead() const { return bytesRead_; }

    bool HasByteOrderMark() const { return hasByteOrderMark_; }
    /// Known once there has been a line.
    bool EndsWithReturns() const { return lineEnd_ == '\r'; }
    /// Whether the line ends with several carriage returns, as texts do that were converted twice.
    bool HasManyReturns() const { return hasManyReturns_; }

    /// Begins to show a line or a part of it: the first characters, with what is not printable as
    /// its code.
    static std::string Shown(std::string_view line);

private:
    /// Reads on; false where nothing is left to be read.
    bool Refill();
    void LookAtStart();

    std::string name_;
    FileHandle file_;
    std::unique_ptr<char[]> buffer_;
    char* cursor_ = nullptr;
    char* end_ = nullptr;
    char lineEnd_ = '\n';
    bool atEnd_ = false;
    bool hasByteOrderMark_ = false;
    bool hasManyReturns_ = false;
    std::string_view line_;
    unsigned long long number_ = 0;
    unsigned long long bytesRead_ = 0;
};

}  // namespace vpc
