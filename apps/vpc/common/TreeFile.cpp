#include "vpc/common/TreeFile.h"

#include <sys/stat.h>

#include <cerrno>
#include <system_error>

#include <wx/filename.h>

#include "core/util/StringTools.h"
#include "tree/file/PointTreeLayout.h"
#include "vpc/common/Command.h"
#include "vpc/common/FileKind.h"

namespace vpc {

OdString hostString(const std::string& native) {
    return StringTools::ToOdString(FileTools::FromNativePath(native));
}

std::string sentence(const IoError& failure, const std::string& advice) {
    return FileTools::ToNativePath("'" + failure.File() + "' " + failure.Problem()) + "; " + advice;
}

void requireTreeFile(const std::string& file) {
    openTreeFile(file);
}

namespace {

/// Throws CommandError for a file that is something else by its first bytes, and for one that has
/// not the name of a tree file. Damaged tree files are left to their reader.
void requireTreeKind(const std::string& file) {
    const FileKind kind = advising("check its permissions, its disk or its network",
                                   [&] { return FileKind::Of(file); });
    const std::string other = "'" + file + "' is " + kind.name + " and no tree file; ";
    if (kind.type == FileKind::Type::Las)
        throw CommandError(other + "prepare it first: " + kind.command);
    if (kind.type == FileKind::Type::Text)
        throw CommandError(other + "if it is a scan, prepare it first: " + kind.command);
    if (kind.type == FileKind::Type::Foreign)
        throw CommandError(other + "convert it first: " + kind.command);
    const bool isNamedSo =
        wxFileName(FileTools::FromNativePath(file)).GetExt() == PointTreeLayout::extension;
    if (isNamedSo) return;
    if (kind.type != FileKind::Type::Tree)
        throw CommandError("'" + file + "' is " + kind.name + "; name a tree file");
    throw CommandError("'" + file +
                       "' is not named '.vpt', in small letters, as tree files are; rename it");
}

}  // namespace

std::unique_ptr<PointTreeReader> openTreeFile(const std::string& file) {
    const auto refuse = [&](const std::string& why) {
        throw CommandError("'" + file + "' " + why);
    };
    struct stat status = {};
    if (stat(file.c_str(), &status) != 0)
        refuse("cannot be read (" + std::generic_category().message(errno) + "); check the name");
    if (!S_ISREG(status.st_mode)) refuse("is no regular file; name a tree file");
    requireTreeKind(file);
    return advising("check its permissions, its disk or its network", [&] {
        return std::make_unique<PointTreeReader>(FileTools::FromNativePath(file));
    });
}

std::unique_ptr<PointTreeReader> openCurrentTreeFile(const std::string& file) {
    auto tree = openTreeFile(file);
    advising("prepare it anew if it is a tree file", [&] { tree->RequireVersion(); });
    advising("get a complete copy or prepare it anew", [&] { tree->Header(); });
    return tree;
}

}  // namespace vpc
