#include "core/util/ReplacementFile.h"

#include <filesystem>
#include <string>
#include <system_error>

#include "core/util/FileTools.h"

namespace vpc {

namespace {

std::filesystem::path followLink(const std::filesystem::path& path) {
    std::error_code error;
    if (!std::filesystem::is_symlink(path, error)) return path;
    const std::filesystem::path resolved = std::filesystem::weakly_canonical(path, error);
    return error ? path : resolved;
}

}  // namespace

ReplacementFile::ReplacementFile(const wxString& target, const wxString& uniqueName) {
    const std::filesystem::path path = followLink(FileTools::ToNativePath(target));
    const std::string name = FileTools::ToNativePath(uniqueName) + ".tmp";
    target_ = FileTools::FromNativePath(path.string());
    temporary_ = FileTools::FromNativePath((path.parent_path() / name).string());
}

ReplacementFile::~ReplacementFile() {
    if (!committed_) FileTools::RemoveFile(temporary_);
}

bool ReplacementFile::Commit() {
    committed_ = FileTools::RenameFile(temporary_, target_);
    return committed_;
}

}  // namespace vpc
