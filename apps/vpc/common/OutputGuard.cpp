#include "vpc/common/OutputGuard.h"

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <optional>
#include <sstream>
#include <system_error>

#include "core/util/FileHandle.h"
#include "core/util/IoError.h"
#include "vpc/common/Command.h"
#include "vpc/common/FileKind.h"
#include "vpc/common/NumberList.h"

namespace vpc {

namespace {

namespace fs = std::filesystem;

/// Whether a regular file that is not empty has the name already.
bool isThere(const std::string& output) {
    std::error_code error;  // the output need not exist yet
    return fs::is_regular_file(output, error) && fs::file_size(output, error) != 0;
}

std::optional<FileKind> kindOfExisting(const std::string& output) {
    if (!isThere(output)) return std::nullopt;
    try {
        return FileKind::Of(output);
    } catch (const IoError&) {
        return FileKind{FileKind::Type::Unknown, "a file that cannot be read", ""};
    }
}

[[noreturn]] void refuse(const std::string& output, const FileKind& there,
                         const std::string& wanted) {
    throw CommandError("'" + output + "' is there already and is " + there.name + ", not " +
                       wanted + "; choose another name");
}

/// How many numbers, or lists of numbers with commas, a line holds; 0 where it holds anything else.
std::size_t numbersOf(const std::string& line) {
    std::size_t numbers = 0;
    std::string word;
    for (std::istringstream words(line); words >> word; ++numbers)
        if (!NumberList::Parse(word)) return 0;
    return numbers;
}

/// The same for the first lines of a text, the one with the most numbers.
std::size_t numbersWithin(const std::string& file, int lines) {
    std::size_t most = 0;
    const FileHandle text(std::fopen(file.c_str(), "re"));
    std::string line;
    for (int i = 0; i < lines && readLine(text.get(), line); ++i)
        most = std::max(most, numbersOf(line));
    return most;
}

}  // namespace

void requireNoFile(const std::string& output) {
    if (isThere(output))
        throw CommandError(
            "'" + output +
            "' is there already; choose another name, or give --force to replace it");
}

void requirePictureOrNothing(const std::string& output) {
    const auto there = kindOfExisting(output);
    if (there && there->type != FileKind::Type::Picture) refuse(output, *there, "a picture");
}

void requireNoScan(const std::string& output) {
    const auto there = kindOfExisting(output);
    if (!there) return;
    const bool mayGo = there->type == FileKind::Type::Tree ||
                       there->type == FileKind::Type::Unknown ||
                       (there->type == FileKind::Type::Text && numbersWithin(output, 3) == 0);
    if (!mayGo) refuse(output, *there, "a point tree file");
}

void requireLogOrNothing(const std::string& log) {
    const auto there = kindOfExisting(log);
    if (!there) return;
    std::string line;
    const FileHandle text(std::fopen(log.c_str(), "re"));
    const bool isLog =
        there->type == FileKind::Type::Text && readLine(text.get(), line) && line.starts_with('[');
    if (!isLog) refuse(log, *there, "a log");
}

void requireOtherFile(const std::string& output, const std::string& input,
                      const std::string& whatInputIs) {
    std::error_code ignored;  // the output need not exist yet
    if (fs::equivalent(output, input, ignored))
        throw CommandError("'" + output + "' is " + whatInputIs + "; choose another name");
}

}  // namespace vpc
