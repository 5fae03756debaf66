#include "vpc/common/FileKind.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <filesystem>
#include <string_view>

#include "core/util/FileHandle.h"
#include "core/util/FileTools.h"
#include "core/util/IoError.h"
#include "core/util/ValueAt.h"
#include "tree/file/PointTreeLayout.h"
#include "vpc/common/ShellWord.h"

namespace vpc {

namespace {

using namespace std::string_view_literals;
using Type = FileKind::Type;

/// Enough for all variable-length records that stand before a compressed LAS file's own one.
constexpr std::size_t headBytes = 65536;
/// Text shows in as many bytes as these: a scan's numbers begin early.
constexpr std::size_t textBytes = 4096;
/// Where a LAS header has the format of its points; compressors set one of its two highest bits.
constexpr std::size_t lasFormatPosition = 104;
constexpr unsigned compressedBits = 0xC0;
constexpr unsigned long long highestTreeVersion = 1000;

/// How a kind of file begins that other programs read. `command` has IN and OUT for the file and
/// for the scan that it makes of it; OUT is IN without its extension and with `extension`.
struct Signature {
    std::string_view start;
    const char* name;
    const char* command;
    const char* extension;
};
constexpr std::array<Signature, 12> signatures = {{
    {"ASTM-E57"sv, "an E57 file", "pdal translate IN OUT", ".las"},
    {"\x1f\x8b"sv, "compressed with gzip", "gunzip IN", ""},
    {"PK\x03\x04"sv, "a zip archive", "unzip IN", ""},
    {"BZh"sv, "compressed with bzip2", "bunzip2 IN", ""},
    {"\xfd"
     "7zXZ"sv,
     "compressed with xz", "unxz IN", ""},
    {"\x28\xb5\x2f\xfd"sv, "compressed with zstd", "unzstd IN", ""},
    {"7z\xbc\xaf\x27\x1c"sv, "a 7z archive", "7z x IN", ""},
    {"ply\n"sv, "a PLY file", "pdal translate IN OUT", ".las"},
    {"ply\r"sv, "a PLY file", "pdal translate IN OUT", ".las"},
    {"# .PCD"sv, "a PCD file", "pdal translate IN OUT", ".las"},
    {"\xff\xfe"sv, "a text in UTF-16", "iconv -f UTF-16 -t UTF-8 IN -o OUT", ".utf8.pts"},
    {"\xfe\xff"sv, "a text in UTF-16", "iconv -f UTF-16 -t UTF-8 IN -o OUT", ".utf8.pts"},
}};

std::string commandFor(const Signature& signature, const std::string& file) {
    const auto replace = [](std::string& text, std::string_view word, const std::string& by) {
        if (const auto at = text.find(word); at != std::string::npos)
            text.replace(at, word.size(), by);
    };
    std::string command = signature.command;
    const std::string out =
        std::filesystem::path(file).replace_extension(signature.extension).string();
    replace(command, "OUT", shellWord(out));
    replace(command, "IN", shellWord(file));
    return command;
}

std::string readHead(const std::string& file) {
    const wxString name = FileTools::FromNativePath(file);
    const FileHandle stream(std::fopen(file.c_str(), "rbe"));
    if (stream == nullptr) throw IoError(name, "cannot be read", errno);
    std::string head(headBytes, '\0');
    head.resize(std::fread(head.data(), 1, head.size(), stream.get()));
    if (std::ferror(stream.get()) != 0) throw IoError(name, "cannot be read", errno);
    return head;
}

bool isCompressedLas(std::string_view head) {
    if (head.size() <= lasFormatPosition) return false;
    const auto format = static_cast<unsigned char>(head[lasFormatPosition]);
    return (format & compressedBits) != 0 || head.find("laszip encoded") != std::string_view::npos;
}

bool isTree(std::string_view head) {
    namespace Layout = PointTreeLayout;
    if (head.size() < Layout::sourceNamesPosition + Layout::wordSize) return false;
    const auto wordAt = [&](Layout::Position position) {
        return valueAt<std::uint64_t>(head.data() + position);
    };
    const auto version = wordAt(Layout::versionPosition);
    return version > 0 && version <= highestTreeVersion && wordAt(Layout::treeTypePosition) <= 1 &&
           wordAt(Layout::nodeRecordsWordPosition) < wordAt(Layout::pointDataWordPosition);
}

/// Whether these are characters, in any encoding that has ASCII's. A text that has been damaged
/// after a few lines is one, too.
bool isText(std::string_view head) {
    const auto isForbidden = [](char c) {
        const bool isControl = static_cast<unsigned char>(c) < ' ' || c == '\x7f';
        return isControl && "\t\n\v\f\r\x1a\x1b"sv.find(c) == std::string_view::npos;
    };
    const auto end = std::find_if(head.begin(), head.end(), isForbidden);
    if (end == head.end()) return true;
    constexpr std::ptrdiff_t fewLines = 2;
    const auto isAscii = [](char c) { return static_cast<unsigned char>(c) < 0x80; };
    return std::all_of(head.begin(), end, isAscii) &&
           std::count(head.begin(), end, '\n') >= fewLines;
}

std::string treeNameOf(const std::string& file) {
    const std::filesystem::path path = file;
    // The scan may have a tree file's name, which its tree file cannot get then.
    const std::string ending = path.extension() == ".vpt" ? "-tree.vpt" : ".vpt";
    return shellWord((path.parent_path() / (path.stem().string() + ending)).string());
}

}  // namespace

FileKind FileKind::Of(const std::string& file) {
    const std::string bytes = readHead(file);
    const std::string_view head = bytes;
    const std::string prepare = "vpc prepare -o " + treeNameOf(file) + " " + shellWord(file);
    if (head.starts_with("LASF")) {
        if (!isCompressedLas(head)) return {Type::Las, "a LAS scan", prepare};
        const std::string las = std::filesystem::path(file).replace_extension(".las").string();
        return {Type::Foreign, "a compressed LAS file (LAZ)",
                "laszip -i " + shellWord(file) + " -o " + shellWord(las)};
    }
    for (const Signature& signature : signatures)
        if (head.starts_with(signature.start))
            return {Type::Foreign, signature.name, commandFor(signature, file)};
    if (head.starts_with("\x89PNG\r\n")) return {Type::Picture, "a picture", ""};
    if (isTree(head)) return {Type::Tree, "a point tree file", "vpc info " + shellWord(file)};
    if (!head.empty() && isText(head.substr(0, textBytes))) return {Type::Text, "a text", prepare};
    return {Type::Unknown, "a file of no kind that vpc knows", ""};
}

}  // namespace vpc
