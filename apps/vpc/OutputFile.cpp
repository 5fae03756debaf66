#include "OutputFile.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <system_error>
#include <utility>

#include "CommandError.h"

namespace vpc {

namespace {

constexpr std::size_t bufferSize = std::size_t{1} << 20;

/// What a newly created file's permissions are to be; mkstemp gives it fewer.
mode_t ordinaryPermissions() {
    const mode_t mask = umask(0);
    umask(mask);
    return 0666 & ~mask;
}

}  // namespace

OutputFile::OutputFile(std::string path) : path_(std::move(path)), temporary_(path_ + ".XXXXXX") {
    struct stat status = {};
    if (stat(path_.c_str(), &status) == 0 && !S_ISREG(status.st_mode))
        throw CommandError("'" + path_ + "' is no regular file; choose another name");
    const int descriptor = mkstemp(temporary_.data());
    if (descriptor < 0) {
        temporary_.clear();
        Fail();
    }
    static_cast<void>(fchmod(descriptor, ordinaryPermissions()));
    file_ = fdopen(descriptor, "wb");
    buffer_.reserve(bufferSize);
}

OutputFile::~OutputFile() {
    if (file_ != nullptr) std::fclose(file_);
    if (!temporary_.empty()) unlink(temporary_.c_str());
}

void OutputFile::Rewind() {
    Flush();
    if (std::fseek(file_, 0, SEEK_SET) != 0) Fail();
}

void OutputFile::Commit() {
    Flush();
    if (std::fclose(std::exchange(file_, nullptr)) != 0) Fail();
    if (std::rename(temporary_.c_str(), path_.c_str()) != 0) Fail();
    temporary_.clear();
}

void OutputFile::Flush() {
    if (std::fwrite(buffer_.data(), 1, buffer_.size(), file_) != buffer_.size()) Fail();
    buffer_.clear();
}

void OutputFile::Fail() const {
    throw CommandError("'" + path_ + "' cannot be written (" +
                       std::generic_category().message(errno) +
                       "); choose another folder or make room");
}

}  // namespace vpc
