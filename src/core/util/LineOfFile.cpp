#include "core/util/LineOfFile.h"

#include <cstdio>
#include <string>
#include <vector>

#include "core/util/FileHandle.h"
#include "core/util/FileTools.h"

namespace vpc {

namespace {

constexpr std::size_t pieceSize = std::size_t{1} << 20U;
constexpr std::size_t mostBytesShown = 60;

bool isLineEnd(char c) {
    return c == '\n' || c == '\r';
}

bool isSpace(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

FileHandle openAt(const wxString& path, unsigned long long position) {
    FileHandle file(std::fopen(FileTools::ToNativePath(path).c_str(), "rbe"));
    if (file != nullptr && fseeko(file.get(), static_cast<off_t>(position), SEEK_SET) != 0)
        file.reset();
    return file;
}

/// Hands `use` the text from `position` on in pieces, until it returns false.
template <class Use>
void forEachPiece(const wxString& path, unsigned long long position, const Use& use) {
    const FileHandle file = openAt(path, position);
    if (file == nullptr) return;
    std::vector<char> piece(pieceSize);
    std::size_t size = 0;
    do {
        size = std::fread(piece.data(), 1, pieceSize, file.get());
    } while (size != 0 && use(piece.data(), piece.data() + size));
}

/// What of a line's bytes is shown: the first ones without what cannot be read, whole characters
/// of UTF-8.
wxString shown(std::string line) {
    const bool isLong = line.size() > mostBytesShown;
    if (isLong) {
        std::size_t size = mostBytesShown;
        while (size > 0 && (static_cast<unsigned char>(line[size]) & 0xC0U) == 0x80U) --size;
        line.resize(size);
    }
    for (char& c : line)
        if (static_cast<unsigned char>(c) < ' ' || c == '\x7F') c = ' ';
    return FileTools::FromNativePath(line).Trim(true).Trim(false) + (isLong ? "..." : "");
}

/// The bytes of the line that begins at `start`; of a long one, more than are shown.
std::string lineFrom(const wxString& path, unsigned long long start) {
    const FileHandle file = openAt(path, start);
    std::string line(mostBytesShown + 1, '\0');
    line.resize(file == nullptr ? 0 : std::fread(line.data(), 1, line.size(), file.get()));
    return line.substr(0, line.find_first_of("\r\n"));
}

}  // namespace

LineOfFile LineOfFile::At(const wxString& path, unsigned long long position) {
    LineOfFile line;
    unsigned long long start = 0;
    unsigned long long at = 0;
    char before = 0;
    forEachPiece(path, 0, [&](const char* p, const char* end) {
        for (; p != end; ++p, ++at) {
            if (at >= position && !isSpace(*p)) return false;
            const bool isSecond = *p == '\n' && before == '\r';
            if (isLineEnd(*p)) start = at + 1;
            if (isLineEnd(*p) && !isSecond) ++line.number;
            before = *p;
        }
        return true;
    });
    line.text = shown(lineFrom(path, start));
    return line;
}

unsigned long long LineOfFile::CountFrom(const wxString& path, unsigned long long position,
                                         const std::function<bool()>& goesOn) {
    unsigned long long lines = 0;
    bool hasText = false;
    forEachPiece(path, position, [&](const char* p, const char* end) {
        for (; p != end; ++p) {
            if (isLineEnd(*p) && hasText) ++lines;
            hasText = !isLineEnd(*p) && (hasText || !isSpace(*p));
        }
        return goesOn();
    });
    return lines + (hasText ? 1 : 0);
}

}  // namespace vpc
