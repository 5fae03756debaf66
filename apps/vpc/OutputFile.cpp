#include "OutputFile.h"

#include <sys/stat.h>

#include <cerrno>
#include <system_error>

#include "CommandError.h"
#include "core/util/FileTools.h"
#include "core/util/StringTools.h"

namespace vpc {

namespace {
constexpr std::size_t bufferSize = std::size_t{1} << 20;
}

OutputFile::OutputFile(const std::string& path)
    : path_(path), replacement_(FileTools::FromNativePath(path), StringTools::createGUID()) {
    struct stat status = {};
    if (stat(path_.c_str(), &status) == 0 && !S_ISREG(status.st_mode))
        throw CommandError("'" + path_ + "' is no regular file; choose another name");
    file_.reset(std::fopen(FileTools::ToNativePath(replacement_.TemporaryName()).c_str(), "wb"));
    if (file_ == nullptr) Fail();
    buffer_.reserve(bufferSize);
}

void OutputFile::Rewind() {
    Flush();
    if (std::fseek(file_.get(), 0, SEEK_SET) != 0) Fail();
}

void OutputFile::Commit() {
    Flush();
    if (std::fclose(file_.release()) != 0) Fail();
    replacement_.Commit();
}

void OutputFile::Flush() {
    if (std::fwrite(buffer_.data(), 1, buffer_.size(), file_.get()) != buffer_.size()) Fail();
    buffer_.clear();
}

void OutputFile::Fail() const {
    throw CommandError("'" + path_ + "' cannot be written (" +
                       std::generic_category().message(errno) +
                       "); choose another folder or make room");
}

}  // namespace vpc
