#include "vpc/scan/TextLines.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>

#include <wx/string.h>

#include "core/util/FileTools.h"
#include "core/util/IoError.h"
#include "vpc/scan/ScanFault.h"

namespace vpc {

namespace {

/// Zeros behind the text, because digits are looked at eight at a time.
constexpr std::size_t padding = 16;
constexpr std::size_t mostShown = 40;
constexpr std::string_view byteOrderMark = "\xef\xbb\xbf";

}  // namespace

TextLines::TextLines(const std::string& file)
    : name_(file),
      file_(std::fopen(file.c_str(), "rbe")),
      buffer_(std::make_unique_for_overwrite<char[]>(longest + padding)) {
    if (file_ == nullptr) throw IoError(FileTools::FromNativePath(file), "cannot be opened", errno);
    // The blocks are as large as the buffer of the stream could ever be.
    std::setvbuf(file_.get(), nullptr, _IONBF, 0);
    cursor_ = end_ = buffer_.get();
}

bool TextLines::Refill() {
    if (atEnd_) return false;
    const auto left = static_cast<std::size_t>(end_ - cursor_);
    std::memmove(buffer_.get(), cursor_, left);
    const std::size_t wanted = longest - left;
    const std::size_t got = std::fread(buffer_.get() + left, 1, wanted, file_.get());
    if (got < wanted && std::ferror(file_.get()) != 0)
        throw IoError(FileTools::FromNativePath(name_), "cannot be read to its end", errno);
    atEnd_ = got < wanted;
    cursor_ = buffer_.get();
    end_ = cursor_ + left + got;
    std::memset(end_, 0, padding);
    if (bytesRead_ == 0) LookAtStart();
    bytesRead_ += got;
    return got != 0;
}

void TextLines::LookAtStart() {
    const std::string_view text(cursor_, static_cast<std::size_t>(end_ - cursor_));
    hasByteOrderMark_ = text.starts_with(byteOrderMark);
    if (hasByteOrderMark_) cursor_ += byteOrderMark.size();
    const bool hasFeeds = text.find('\n') != std::string_view::npos;
    if (!hasFeeds && text.find('\r') != std::string_view::npos) lineEnd_ = '\r';
}

bool TextLines::Next() {
    const auto findEnd = [&](std::size_t from) {
        return static_cast<char*>(
            std::memchr(cursor_ + from, lineEnd_, static_cast<std::size_t>(end_ - cursor_) - from));
    };
    char* end = findEnd(0);
    while (end == nullptr) {
        const auto seen = static_cast<std::size_t>(end_ - cursor_);
        if (seen == longest)
            throw ScanFault(ScanFault::Kind::Unusable,
                            "has no end of line in " + std::to_string(longest) +
                                " bytes after line " + std::to_string(number_),
                            "get a complete copy, as text with a point a line");
        if (!Refill()) break;
        end = findEnd(number_ == 0 ? 0 : seen);
    }
    if (end == nullptr && cursor_ == end_) return false;
    char* const stop = end == nullptr ? end_ : end;
    char* last = stop;
    while (last != cursor_ && last[-1] == '\r') --last;
    hasManyReturns_ = stop - last > 1;
    line_ = {cursor_, static_cast<std::size_t>(last - cursor_)};
    cursor_ = end == nullptr ? end_ : end + 1;
    ++number_;
    return true;
}

std::string TextLines::Shown(std::string_view line) {
    std::string_view part = line.substr(0, mostShown);
    // Not within a character of several bytes.
    while (part.size() < line.size() && !part.empty() &&
           (static_cast<unsigned char>(line[part.size()]) & 0xC0) == 0x80)
        part.remove_suffix(1);
    const bool isUtf8 = !wxString::FromUTF8(part.data(), part.size()).empty();
    std::string text;
    for (const char c : part) {
        const auto code = static_cast<unsigned char>(c);
        const bool isPrintable = code >= ' ' && code != 0x7f && (code < 0x80 || isUtf8);
        if (c == '\t') {
            text += "\\t";
        } else if (isPrintable) {
            text += c;
        } else {
            std::array<char, 5> escape;
            std::snprintf(escape.data(), escape.size(), "\\x%02x", static_cast<unsigned>(code));
            text += escape.data();
        }
    }
    return "'" + text + (part.size() < line.size() ? "..." : "") + "'";
}

}  // namespace vpc
