#include "core/util/ReplacementFile.h"

#include <cerrno>
#include <filesystem>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <wx/translation.h>

#include "core/util/Descriptor.h"
#include "core/util/FileTools.h"
#include "core/util/IoError.h"
#include "core/util/StringTools.h"

namespace vpc {

namespace {

namespace fs = std::filesystem;

/// Flushes of the buffer between two requests to begin the writing.
constexpr unsigned flushesPerWriteBack = 16;
/// The system itself follows no more links in a row.
constexpr int mostLinks = 40;

fs::path folderOf(const fs::path& path) {
    const fs::path folder = path.parent_path();
    return folder.empty() ? fs::path(".") : folder;
}

bool isThere(const fs::path& path) {
    struct stat status {};
    return stat(path.c_str(), &status) == 0;
}

void requireReplaceable(const fs::path& path) {
    struct stat status {};
    if (stat(path.c_str(), &status) == 0 && !S_ISREG(status.st_mode))
        throw IoError(FileTools::FromNativePath(path.string()),
                      wxGetTranslation("is no regular file; choose another name"));
}

}  // namespace

wxString ReplacementFile::FollowLinks(const wxString& target) {
    fs::path path = FileTools::ToNativePath(target);
    for (int links = 0; links < mostLinks; ++links) {
        std::error_code error;
        const fs::path next = fs::read_symlink(path, error);
        if (error) return FileTools::FromNativePath(path.string());
        path = path.parent_path() / next;
    }
    throw IoError(target, wxGetTranslation("cannot be written"), ELOOP);
}

ReplacementFile::ReplacementFile(const wxString& target)
    : ReplacementFile(target, StringTools::createGUID()) {
}

ReplacementFile::ReplacementFile(const wxString& target, const wxString& uniqueName)
    : target_(FollowLinks(target)) {
    const fs::path path = FileTools::ToNativePath(target_);
    requireReplaceable(path);
    const std::string name = TemporaryOwner::NameStart(TemporaryOwner::resultPrefix) +
                             FileTools::ToNativePath(uniqueName) +
                             std::string(TemporaryOwner::resultEnd);
    const fs::path temporary = path.parent_path() / name;
    temporary_ = FileTools::FromNativePath(temporary.string());
    file_.reset(std::fopen(temporary.c_str(), "wbe"));
    if (file_ == nullptr) Fail();
    owner_.emplace(temporary.string());
}

ReplacementFile::~ReplacementFile() {
    if (!committed_) FileTools::RemoveFile(temporary_);
}

void ReplacementFile::Rewind() {
    Flush();
    if (std::fseek(file_.get(), 0, SEEK_SET) != 0) Fail();
}

void ReplacementFile::Commit() {
    Close();
    const fs::path target = FileTools::ToNativePath(target_);
    // Something else may have got the name since this object was made.
    requireReplaceable(target);
    const bool replaces = isThere(target);
    if (replaces) Sync();
    if (!FileTools::RenameFile(temporary_, target_)) Fail();
    committed_ = true;
    if (!replaces) return;
    // Should this fail, the older file may come back after a power cut, and it is whole.
    const Descriptor folder(folderOf(target), O_RDONLY | O_DIRECTORY);
    if (folder.Number() >= 0) fsync(folder.Number());
}

void ReplacementFile::Flush() {
    if (std::fwrite(buffer_.data(), 1, buffer_.size(), file_.get()) != buffer_.size()) Fail();
    buffer_.clear();
    if (++flushes_ % flushesPerWriteBack == 0) startWriteBack(file_.get());
}

void ReplacementFile::Close() {
    if (!buffer_.empty()) Flush();
    if (std::fclose(file_.release()) != 0) Fail();
}

void ReplacementFile::Sync() const {
    const Descriptor file(FileTools::ToNativePath(temporary_), O_RDONLY);
    if (file.Number() < 0 || fsync(file.Number()) != 0) Fail();
}

void ReplacementFile::Fail() const {
    const int reason = errno;
    throw IoError(target_, wxGetTranslation("cannot be written"), reason);
}

}  // namespace vpc
