#include "vpc/common/OutputKind.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <vector>

#include "core/util/FileHandle.h"
#include "core/util/ValueAt.h"
#include "tree/file/PointTreeLayout.h"
#include "vpc/common/Command.h"

namespace vpc {

namespace {

namespace fs = std::filesystem;

/// Enough for two long lines.
constexpr std::size_t bytesToJudge = 4096;
/// Versions of tree files up to this one are taken for such; no text begins with seven zeros.
constexpr unsigned long long plausibleVersion = 255;

/// What the beginning of a line of a text looks like.
struct Line {
    std::size_t numbers = 0;
    std::size_t words = 0;
    bool whole = false;
    bool commas = false;

    bool IsCount() const { return numbers == 1 && words == 1 && whole; }
    bool IsPoint() const { return numbers >= 3 && words == numbers; }
};

bool isNumber(std::string_view word) {
    if (word.size() > 1 && word[0] == '+') word.remove_prefix(1);
    double value = 0.0;
    const auto result = std::from_chars(word.data(), word.data() + word.size(), value);
    return result.ec == std::errc() && result.ptr == word.data() + word.size();
}

Line lineOf(std::string_view text) {
    constexpr const char* separators = " \t\r,;";
    Line line;
    line.commas = text.find_first_of(",;") != std::string_view::npos;
    line.whole = text.find_first_not_of("0123456789 \t\r") == std::string_view::npos;
    for (std::size_t end = 0; end < text.size();) {
        const std::size_t start = text.find_first_not_of(separators, end);
        if (start == std::string_view::npos) break;
        end = std::min(text.find_first_of(separators, start), text.size());
        ++line.words;
        if (isNumber(text.substr(start, end - start))) ++line.numbers;
    }
    return line;
}

/// The first three lines that are not blank.
std::vector<Line> firstLines(std::string_view text) {
    std::vector<Line> lines;
    while (!text.empty() && lines.size() < 3) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        const Line line = lineOf(text.substr(0, end));
        if (line.words > 0) lines.push_back(line);
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return lines;
}

bool isText(std::string_view bytes) {
    return std::none_of(bytes.begin(), bytes.end(), [](unsigned char c) {
        return c < ' ' && c != '\n' && c != '\r' && c != '\t' && c != '\f';
    });
}

OutputKind kindOfText(std::string_view text) {
    std::vector<Line> lines = firstLines(text);
    if (lines.empty()) return OutputKind::other;
    if (lines[0].IsCount()) {
        if (lines.size() == 1 || lines[1].IsPoint()) return OutputKind::pts;
        return lines[1].IsCount() ? OutputKind::ptx : OutputKind::other;
    }
    // Names of the columns may stand above the points.
    if (lines[0].numbers == 0 && lines.size() > 1) lines.erase(lines.begin());
    if (!lines[0].IsPoint()) return OutputKind::other;
    return lines[0].commas ? OutputKind::csv : OutputKind::pointLines;
}

bool startsWith(std::string_view bytes, std::string_view signature) {
    return bytes.substr(0, signature.size()) == signature;
}

OutputKind kindOf(std::string_view bytes) {
    if (bytes.empty()) return OutputKind::empty;
    if (startsWith(bytes, "LASF")) return OutputKind::las;
    if (startsWith(bytes, "ply\n") || startsWith(bytes, "ply\r")) return OutputKind::ply;
    if (startsWith(bytes, "\x89PNG\r\n")) return OutputKind::png;
    if (bytes.size() >= PointTreeLayout::sourceNamesPosition) {
        const auto version = valueAt<unsigned long long>(bytes.data());
        const auto treeType =
            valueAt<unsigned long long>(bytes.data() + PointTreeLayout::treeTypePosition);
        if (version >= 1 && version <= plausibleVersion && treeType <= 1) return OutputKind::tree;
    }
    return isText(bytes) ? kindOfText(bytes) : OutputKind::other;
}

std::string nameOf(OutputKind kind) {
    switch (kind) {
        case OutputKind::tree:
            return "a point tree file";
        case OutputKind::las:
            return "a LAS file";
        case OutputKind::ply:
            return "a PLY file";
        case OutputKind::png:
            return "a picture";
        case OutputKind::pts:
            return "a PTS scan";
        case OutputKind::ptx:
            return "a PTX scan";
        case OutputKind::pointLines:
            return "a list of points";
        case OutputKind::csv:
            return "a list of points with commas";
        case OutputKind::empty:
        case OutputKind::other:
            break;
    }
    return "a file of another kind";
}

}  // namespace

OutputKind kindOfExisting(const std::string& path) {
    const FileHandle file(std::fopen(path.c_str(), "rbe"));
    if (file == nullptr) return OutputKind::other;
    std::string bytes(bytesToJudge, '\0');
    bytes.resize(std::fread(bytes.data(), 1, bytes.size(), file.get()));
    if (std::ferror(file.get()) != 0) return OutputKind::other;
    return kindOf(bytes);
}

void requireReplaceable(const std::string& output, OutputKind kind) {
    std::error_code ignored;  // the output need not exist yet
    if (!fs::is_regular_file(output, ignored)) return;
    const OutputKind there = kindOfExisting(output);
    if (there == OutputKind::empty || there == kind) return;
    throw CommandError("'" + output + "' is there already and is " + nameOf(there) + ", not " +
                       nameOf(kind) + "; choose another name");
}

void requireNoOtherScan(const std::string& output, OutputKind kind) {
    std::error_code ignored;  // the output need not exist yet
    if (fs::is_regular_file(output, ignored) && kindOfExisting(output) != OutputKind::other)
        requireReplaceable(output, kind);
}

void requireNoFile(const std::string& output) {
    std::error_code ignored;  // the output need not exist yet
    if (!fs::is_regular_file(output, ignored)) return;
    if (kindOfExisting(output) != OutputKind::empty)
        throw CommandError(
            "'" + output +
            "' is there already; choose another name, or give --force to replace it");
}

void requireOtherFile(const std::string& output, const std::string& input,
                      const std::string& whatInputIs) {
    std::error_code ignored;  // the output need not exist yet
    if (fs::equivalent(output, input, ignored))
        throw CommandError("'" + output + "' is " + whatInputIs + "; choose another name");
}

}  // namespace vpc
