#include "core/util/FileTools.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <system_error>

#include <unistd.h>

#include "core/util/FileHandle.h"

namespace {

namespace fs = std::filesystem;

// --- Text, one character at a time ---------------------------------------------------------------

/// How the code units of a text lie in its bytes.
struct TextEncoding {
    std::size_t unitSize = 1;
    bool bigEndian = false;
    std::size_t markSize = 0;
};

/// Recognises a byte order mark; text without one has units of one byte, whose delimiters are the
/// same in UTF-8 and in Latin-1.
TextEncoding detectEncoding(const unsigned char* b, std::size_t size) {
    if (size >= 4 && b[0] == 0 && b[1] == 0 && b[2] == 0xFE && b[3] == 0xFF) return {4, true, 4};
    if (size >= 4 && b[0] == 0xFF && b[1] == 0xFE && b[2] == 0 && b[3] == 0) return {4, false, 4};
    if (size >= 2 && b[0] == 0xFE && b[1] == 0xFF) return {2, true, 2};
    if (size >= 2 && b[0] == 0xFF && b[1] == 0xFE) return {2, false, 2};
    if (size >= 3 && b[0] == 0xEF && b[1] == 0xBB && b[2] == 0xBF) return {1, false, 3};
    return {};
}

std::uint32_t codeUnit(const unsigned char* bytes, const TextEncoding& encoding) {
    std::uint32_t unit = 0;
    for (std::size_t i = 0; i < encoding.unitSize; ++i)
        unit = unit << 8U | bytes[encoding.bigEndian ? i : encoding.unitSize - 1 - i];
    return unit;
}

vpc::FileHandle openToRead(const wxString& path) {
    return vpc::FileHandle(std::fopen(FileTools::ToNativePath(path).c_str(), "rbe"));
}

/// Hands `use` the code units of a text file until it returns false.
template <class Use>
void forEachUnit(std::FILE* file, const Use& use) {
    if (file == nullptr) return;
    // A multiple of every unit size, so that no unit is torn.
    constexpr std::size_t pieceSize = std::size_t{1} << 16U;
    std::vector<unsigned char> piece(pieceSize);
    std::size_t size = std::fread(piece.data(), 1, pieceSize, file);
    const TextEncoding encoding = detectEncoding(piece.data(), size);
    std::size_t at = encoding.markSize;
    while (size > 0) {
        for (; at + encoding.unitSize <= size; at += encoding.unitSize)
            if (!use(codeUnit(&piece[at], encoding))) return;
        size = std::fread(piece.data(), 1, pieceSize, file);
        at = 0;
    }
}

/// Tells where lines end: at a line feed, a carriage return, or both in a row, which the carriage
/// return ends and the line feed after it belongs to.
class LineEnds {
public:
    enum class Kind { LineEnd, Skipped, Text };

    Kind Next(std::uint32_t unit) {
        const bool second = unit == '\n' && afterReturn_;
        afterReturn_ = unit == '\r';
        if (second) return Kind::Skipped;
        return unit == '\n' || unit == '\r' ? Kind::LineEnd : Kind::Text;
    }

private:
    bool afterReturn_ = false;
};

// --- Folders -------------------------------------------------------------------------------------

/// All files below a folder. Goes on past folders that cannot be read.
std::vector<fs::path> filesBelow(const wxString& folder) {
    std::vector<fs::path> files;
    std::vector<fs::path> folders{FileTools::ToNativePath(folder)};
    while (!folders.empty()) {
        std::error_code error;
        fs::directory_iterator entry(folders.back(), error);
        folders.pop_back();
        for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
            std::error_code ignored;
            if (!entry->is_directory(ignored))
                files.push_back(entry->path());
            else if (!entry->is_symlink(ignored))
                folders.push_back(entry->path());
        }
    }
    return files;
}

bool isToBeDeleted(const wxString& name, VpcCleanFolderMode mode,
                   const std::vector<wxString>& names) {
    const auto any = [&names](const auto& test) {
        return std::any_of(names.begin(), names.end(), test);
    };
    if (mode == CleanFolderKeepListed)
        return !any([&name](const wxString& kept) { return name == kept; });
    if (mode == CleanFolderDeleteByPrefix)
        return any([&name](const wxString& prefix) { return name.StartsWith(prefix); });
    return true;
}

}  // namespace

std::string FileTools::ToNativePath(const wxString& path) {
    const std::wstring& wide = path.ToStdWstring();
    constexpr auto failed = static_cast<std::size_t>(-1);
    const std::size_t size = std::wcstombs(nullptr, wide.c_str(), 0);
    if (size == failed) return path.ToStdString(wxConvUTF8);
    std::string native(size, '\0');
    std::wcstombs(native.data(), wide.c_str(), size);
    return native;
}

wxString FileTools::FromNativePath(const std::string& path) {
    constexpr auto failed = static_cast<std::size_t>(-1);
    const std::size_t size = std::mbstowcs(nullptr, path.c_str(), 0);
    if (size == failed) {
        const wxString fromUtf8 = wxString::FromUTF8(path.data(), path.size());
        return fromUtf8.empty() ? wxString(path.data(), wxConvISO8859_1, path.size()) : fromUtf8;
    }
    std::wstring wide(size, L'\0');
    std::mbstowcs(wide.data(), path.c_str(), size);
    return wide;
}

bool FileTools::FileExists(const wxString& path) {
    std::error_code error;
    const fs::file_status status = fs::status(ToNativePath(path), error);
    return fs::exists(status) && !fs::is_directory(status);
}

bool FileTools::RemoveFile(const wxString& path) {
    return unlink(ToNativePath(path).c_str()) == 0;
}

bool FileTools::RenameFile(const wxString& from, const wxString& to) {
    return std::rename(ToNativePath(from).c_str(), ToNativePath(to).c_str()) == 0;
}

unsigned long long FileTools::CountTokensOnLine(const wxString& path,
                                                unsigned long long lineIndex) {
    return CountTokensOnLine(openToRead(path).get(), lineIndex);
}

unsigned long long FileTools::CountTokensOnLine(std::FILE* file, unsigned long long lineIndex) {
    LineEnds lineEnds;
    unsigned long long line = 0;
    unsigned long long tokens = 0;
    bool inToken = false;
    forEachUnit(file, [&](std::uint32_t unit) {
        const LineEnds::Kind kind = lineEnds.Next(unit);
        if (kind == LineEnds::Kind::LineEnd) return line++ < lineIndex;
        if (kind == LineEnds::Kind::Skipped || line < lineIndex) return true;
        const bool wasInToken = inToken;
        inToken = unit != ' ' && unit != '\t';
        if (inToken && !wasInToken) ++tokens;
        return true;
    });
    return tokens;
}

unsigned long long FileTools::CountLinesInFile(const wxString& path) {
    LineEnds lineEnds;
    unsigned long long lines = 0;
    bool openLine = false;
    forEachUnit(openToRead(path).get(), [&](std::uint32_t unit) {
        const LineEnds::Kind kind = lineEnds.Next(unit);
        if (kind != LineEnds::Kind::Skipped) openLine = kind == LineEnds::Kind::Text;
        if (kind == LineEnds::Kind::LineEnd) ++lines;
        return true;
    });
    return lines + (openLine ? 1 : 0);
}

unsigned long long FileTools::GetNrFilesInDir(const wxString& folder) {
    return filesBelow(folder).size();
}

void FileTools::DeleteFilesInFolder(const wxString& folder, VpcCleanFolderMode mode,
                                    const std::vector<wxString>& names) {
    for (const fs::path& file : filesBelow(folder))
        if (isToBeDeleted(FromNativePath(file.filename().string()), mode, names))
            unlink(file.c_str());
}
