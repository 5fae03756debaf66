#include "vpc/common/OutputFile.h"

#include <filesystem>

#include "core/util/FileTools.h"
#include "core/util/IoError.h"
#include "core/util/TemporaryOwner.h"
#include "vpc/common/Command.h"

namespace vpc {

void removeLeftoversBeside(const std::string& output) {
    try {
        const wxString target = ReplacementFile::FollowLinks(FileTools::FromNativePath(output));
        const std::filesystem::path path = FileTools::ToNativePath(target);
        TemporaryOwner::RemoveLeftovers(path.parent_path().string());
    } catch (const IoError&) {
        // The links lead in a circle; whoever writes there says so.
        return;
    }
}

void writeOutputFile(const std::string& path, const std::function<void(ReplacementFile&)>& write) {
    removeLeftoversBeside(path);
    try {
        ReplacementFile file(FileTools::FromNativePath(path));
        write(file);
        file.Commit();
    } catch (const IoError& error) {
        // The user knows the name that the command line gives, not the temporary one.
        std::string text = "'" + path + "' " + FileTools::ToNativePath(error.Problem());
        if (error.SystemReason() != 0) text += "; choose another folder or make room";
        throw CommandError(text);
    }
}

}  // namespace vpc
