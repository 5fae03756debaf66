#include "vpc/common/TreeFile.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstdio>
#include <system_error>

#include <wx/filename.h>

#include "core/util/FileHandle.h"
#include "core/util/FileTools.h"
#include "core/util/StringTools.h"
#include "vpc/common/Command.h"

namespace vpc {

OdString hostString(const std::string& native) {
    return StringTools::ToOdString(FileTools::FromNativePath(native));
}

void requireTreeFile(const std::string& file) {
    const auto refuse = [&](const std::string& why) {
        throw CommandError("'" + file + "' " + why);
    };
    const auto reason = [] { return std::generic_category().message(errno); };
    if (wxFileName(FileTools::FromNativePath(file)).GetExt() != PointTreeLayout::extension)
        refuse("is not named '.vpt', in small letters, as tree files are; rename it");
    struct stat status = {};
    if (stat(file.c_str(), &status) != 0)
        refuse("cannot be read (" + reason() + "); check the name");
    if (!S_ISREG(status.st_mode)) refuse("is no regular file; name a tree file");
    const FileHandle handle(std::fopen(file.c_str(), "rb"));
    if (handle == nullptr) refuse("cannot be read (" + reason() + "); change its permissions");
    // What comes after would take a disk that fails for a damaged file.
    char first = 0;
    if (std::fread(&first, 1, 1, handle.get()) == 0 && std::ferror(handle.get()) != 0)
        refuse("cannot be read (" + reason() + "); check its disk or network");
}

}  // namespace vpc
