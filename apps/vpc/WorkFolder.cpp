#include "WorkFolder.h"

#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <system_error>

#include "CommandError.h"

namespace vpc {

WorkFolder::WorkFolder(const std::string& parent) : path_(parent + "/vpc-work-XXXXXX") {
    if (mkdtemp(path_.data()) == nullptr)
        throw CommandError("no temporary folder can be made in '" + parent + "' (" +
                           std::generic_category().message(errno) +
                           "); name a folder that can be written with --work");
}

WorkFolder::~WorkFolder() {
    // Mostly it is empty, and then needs not be opened, for which there may be no descriptor left.
    if (rmdir(path_.c_str()) == 0) return;
    std::error_code ignored;  // nothing is left to be done about a folder that cannot be removed
    std::filesystem::remove_all(path_, ignored);
}

}  // namespace vpc
