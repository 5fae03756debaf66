#include "vpc/scan/ScanList.h"

#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cerrno>
#include <filesystem>
#include <string_view>
#include <system_error>

#include "core/util/FileHandle.h"
#include "vpc/common/Command.h"
#include "vpc/common/Trimmed.h"

namespace vpc {

namespace {

namespace fs = std::filesystem;

constexpr std::array<std::string_view, 7> scanExtensions = {".las", ".pts", ".ptx", ".xyz",
                                                            ".txt", ".csv", ".asc"};
constexpr std::array<std::string_view, 5> foreignExtensions = {".laz", ".e57", ".gz", ".zip",
                                                               ".ply"};

std::string smallExtensionOf(const fs::path& file) {
    std::string extension = file.extension().string();
    for (char& c : extension) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return extension;
}

template <class Extensions>
bool hasOneOf(const Extensions& extensions, const fs::path& file) {
    return std::find(extensions.begin(), extensions.end(), smallExtensionOf(file)) !=
           extensions.end();
}

std::string reason(int error) {
    return " (" + std::generic_category().message(error) + ")";
}

std::string readWhole(const std::string& file) {
    const FileHandle stream(std::fopen(file.c_str(), "rbe"));
    const auto fail = [&]() -> std::string {
        throw CommandError("the list '" + file + "' cannot be read" + reason(errno) +
                           "; check its name");
    };
    if (stream == nullptr) return fail();
    std::string text;
    std::array<char, 65536> piece;
    while (const std::size_t got = std::fread(piece.data(), 1, piece.size(), stream.get()))
        text.append(piece.data(), got);
    return std::ferror(stream.get()) != 0 ? fail() : text;
}

}  // namespace

ScanList::ScanList(const std::vector<std::string>& arguments) {
    for (const std::string& argument : arguments) {
        if (argument.size() > 1 && argument.front() == '@')
            AddList(argument.substr(1));
        else
            AddFileOrFolder(argument);
    }
}

void ScanList::AddList(const std::string& list) {
    const std::string text = readWhole(list);
    std::string_view rest = text;
    constexpr std::string_view byteOrderMark = "\xef\xbb\xbf";
    if (rest.starts_with(byteOrderMark)) rest.remove_prefix(byteOrderMark.size());
    if (rest.find('\0') != std::string_view::npos)
        throw CommandError("the list '" + list +
                           "' is no text in UTF-8; write it as one, with a file name a line");
    bool namesAny = false;
    while (!rest.empty()) {
        const std::size_t end = std::min(rest.find('\n'), rest.size());
        const std::string_view line = trimmed(rest.substr(0, end), " \t\r");
        rest.remove_prefix(std::min(end + 1, rest.size()));
        if (line.empty() || line.front() == '#') continue;
        // An absolute name stays as it is.
        AddFileOrFolder((fs::path(list).parent_path() / line).string());
        namesAny = true;
    }
    if (!namesAny)
        throw CommandError("the list '" + list +
                           "' names no scan; write the name of a file or a folder in every line");
}

void ScanList::AddFileOrFolder(const std::string& name) {
    std::error_code ignored;  // what cannot be looked at is told of when it is to be read
    if (fs::is_directory(name, ignored))
        AddFolder(name);
    else
        AddFile(name);
}

void ScanList::AddFolder(const std::string& folder) {
    std::vector<std::string> scans;
    std::vector<std::string> foreign;
    std::error_code error;
    fs::directory_iterator entry(folder, error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
        const fs::path& file = entry->path();
        std::error_code ignored;
        if (file.filename().string().front() == '.' || entry->is_directory(ignored)) continue;
        if (hasOneOf(scanExtensions, file)) scans.push_back(file.string());
        if (hasOneOf(foreignExtensions, file)) foreign.push_back(file.filename().string());
    }
    if (error)
        throw CommandError("the folder '" + folder + "' cannot be read" + reason(error.value()) +
                           "; check its rights");
    if (scans.empty())
        throw CommandError("the folder '" + folder +
                           "' holds no scan (las, pts, ptx, xyz, txt, csv or asc); name another");
    std::sort(scans.begin(), scans.end());
    std::sort(foreign.begin(), foreign.end());
    for (const std::string& scan : scans) AddFile(scan);
    if (foreign.empty()) return;
    warnings_.push_back(
        "the folder '" + folder + "' also holds '" + foreign.front() + "'" +
        (foreign.size() == 1 ? "" : " and " + std::to_string(foreign.size() - 1) + " files more") +
        ", left out because vpc reads no such files");
}

void ScanList::AddFile(const std::string& file) {
    struct stat status = {};
    // What is not there is told of when it is to be read.
    const bool isThere = stat(file.c_str(), &status) == 0;
    const auto [earlier, isNew] = isThere ? names_.try_emplace({status.st_dev, status.st_ino}, file)
                                          : std::pair(names_.end(), true);
    if (isNew)
        files_.push_back(file);
    else if (earlier->second == file)
        warnings_.push_back("the scan '" + file + "' is given twice and read once");
    else
        warnings_.push_back("the scans '" + earlier->second + "' and '" + file +
                            "' are the same file, which is read once");
}

}  // namespace vpc
