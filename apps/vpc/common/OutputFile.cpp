#include "vpc/common/OutputFile.h"

#include <filesystem>

#include "core/util/FileTools.h"
#include "core/util/IoError.h"
#include "core/util/TemporaryOwner.h"
#include "vpc/common/Command.h"

namespace vpc {

void writeOutputFile(const std::string& path, const std::function<void(ReplacementFile&)>& write) {
    TemporaryOwner::RemoveLeftovers(std::filesystem::path(path).parent_path().string());
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
