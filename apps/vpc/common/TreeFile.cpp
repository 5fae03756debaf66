#include "vpc/common/TreeFile.h"

#include <sys/stat.h>

#include <cerrno>
#include <system_error>

#include <wx/filename.h>

#include "core/util/StringTools.h"
#include "tree/file/PointTreeLayout.h"
#include "vpc/common/Command.h"

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

std::unique_ptr<PointTreeReader> openTreeFile(const std::string& file) {
    const auto refuse = [&](const std::string& why) {
        throw CommandError("'" + file + "' " + why);
    };
    const wxString name = FileTools::FromNativePath(file);
    if (wxFileName(name).GetExt() != PointTreeLayout::extension)
        refuse("is not named '.vpt', in small letters, as tree files are; rename it");
    struct stat status = {};
    if (stat(file.c_str(), &status) != 0)
        refuse("cannot be read (" + std::generic_category().message(errno) + "); check the name");
    if (!S_ISREG(status.st_mode)) refuse("is no regular file; name a tree file");
    return advising("check its permissions, its disk or its network",
                    [&] { return std::make_unique<PointTreeReader>(name); });
}

std::unique_ptr<PointTreeReader> openCurrentTreeFile(const std::string& file) {
    auto tree = openTreeFile(file);
    advising("prepare it anew if it is a tree file", [&] { tree->RequireVersion(); });
    advising("get a complete copy or prepare it anew", [&] { tree->Header(); });
    return tree;
}

}  // namespace vpc
