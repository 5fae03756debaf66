#include "core/util/FileBufferStream.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <limits>
#include <string>

#include <sys/stat.h>

#include "core/util/FileHandle.h"
#include "core/util/FileTools.h"

namespace {

/// The most characters that a string read from a file may hold. The tree file is designed for this
/// limit.
constexpr std::size_t scratchCharacters = 1024;

bool isEmptyFile(const std::string& path) {
    struct stat status {};
    return stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) && status.st_size == 0;
}

const char* cMode(const std::string& path, VpcFileMode mode, bool append) {
    if (mode != FileModeWrite) return "rbe";
    if (append) return "abe";
    // A file system may put a file on the disk, and have its last writer wait for that, because it
    // was emptied before.
    return isEmptyFile(path) ? "r+be" : "wbe";
}

bool isFolder(std::FILE* file) {
    struct stat status {};
    return fstat(fileno(file), &status) == 0 && S_ISDIR(status.st_mode);
}

}  // namespace

FileBufferStream::~FileBufferStream() {
    StreamClose();
    ReleaseBuffer();
}

bool FileBufferStream::StreamOpen(const wxString& path, VpcFileMode openMode, bool append) {
    mode = openMode;
    const std::string native = FileTools::ToNativePath(path);
    fileName.fill('\0');
    native.copy(fileName.data(), fileName.size() - 1);
    if (file_ != nullptr) {
        failed_ = true;
        return false;
    }
    failed_ = false;
    systemError_ = 0;
    file_ = std::fopen(native.c_str(), cMode(native, openMode, append));
    if (file_ == nullptr) {
        Fail(errno);
    } else if (isFolder(file_)) {
        // The C library opens folders for reading, too, and gives them a meaningless size.
        StreamClose();
        Fail(EISDIR);
    }
    return !failed_;
}

void FileBufferStream::StreamClose() {
    if (file_ == nullptr) return;
    // fclose gives the handle up even if it fails, so the handle is cleared in any case.
    if (std::fclose(file_) != 0) Fail(errno);
    file_ = nullptr;
}

void FileBufferStream::StreamStartWriteBack() {
    if (file_ != nullptr) vpc::startWriteBack(file_);
}

void FileBufferStream::StreamPreallocate(unsigned long long begin, unsigned long long end) {
    if (file_ != nullptr) vpc::preallocate(file_, begin, end);
}

unsigned long long FileBufferStream::StreamPosition() {
    if (file_ == nullptr) return std::numeric_limits<unsigned long long>::max();
    return static_cast<unsigned long long>(ftello(file_));
}

void FileBufferStream::StreamSeek(unsigned long long offset) {
    if (!CanTransfer()) return;
    if (offset > static_cast<unsigned long long>(std::numeric_limits<off_t>::max()))
        Fail(EOVERFLOW);
    else if (fseeko(file_, static_cast<off_t>(offset), SEEK_SET) != 0)
        Fail(errno);
}

unsigned long long FileBufferStream::StreamSize() {
    if (!CanTransfer()) return 0;
    const unsigned long long position = StreamPosition();
    if (fseeko(file_, 0, SEEK_END) != 0) {
        Fail(errno);
        return 0;
    }
    const unsigned long long size = StreamPosition();
    StreamSeek(position);
    return failed_ ? 0 : size;
}

wxString FileBufferStream::StreamReadString(unsigned long long count) {
    std::array<char32_t, scratchCharacters> scratch{};
    const bool untilZero = count == static_cast<unsigned long long>(wxString::npos);
    if (!untilZero && count > scratch.size()) {
        failed_ = true;
        return {};
    }
    const unsigned long long wanted = untilZero ? scratch.size() : count;
    ReadSome(reinterpret_cast<char*>(scratch.data()), wanted * sizeof(char32_t));
    const char32_t* const begin = scratch.data();
    const char32_t* end = begin + wanted;
    if (untilZero) end = std::find(begin, end, U'\0');
    wxString text;
    text.reserve(static_cast<std::size_t>(end - begin));
    for (const char32_t* c = begin; c != end; ++c)
        text += wxUniChar(static_cast<std::uint32_t>(*c));
    return text;
}

void FileBufferStream::StreamWriteString(const wxString& text) {
    for (const wxUniChar c : text) WriteValue(static_cast<std::uint32_t>(c.GetValue()));
}

char* FileBufferStream::CreateInternalBuffer(unsigned long long size) {
    DeleteBuffer();
    bufferStart = new char[size];  // NOLINT: the buffer may be the caller's, so no smart pointer
    bufferCursor = bufferStart;
    bufferSize = size;
    externalBuffer = false;
    return bufferStart;
}

void FileBufferStream::AttachExternalBuffer(char* block, unsigned long long size) {
    DeleteBuffer();
    bufferStart = bufferCursor = block;
    bufferSize = size;
    externalBuffer = true;
}

void FileBufferStream::ReleaseBuffer() {
    if (externalBuffer) bufferStart = nullptr;  // the caller's
    externalBuffer = false;
    DeleteBuffer();
}

bool FileBufferStream::ReadFile2Buffer() {
    if (!CanTransfer()) return false;
    const unsigned long long size = StreamSize();
    StreamSeek(0);
    if (failed_) return false;
    bufferStart = nullptr;
    CreateInternalBuffer(size);
    lastBlockSize_ = ReadSome(bufferStart, size);
    return true;
}

bool FileBufferStream::ReadFileBlock2Buffer(unsigned long long offset, unsigned long long size) {
    lastBlockSize_ = 0;
    if (size > bufferSize) CreateInternalBuffer(size);
    if (!CanTransfer()) return false;
    StreamSeek(offset);
    lastBlockSize_ = ReadSome(bufferStart, bufferSize);
    return true;
}

void FileBufferStream::WriteBuffer2File(unsigned long long startOffset, bool wholeBuffer,
                                        unsigned long long count) {
    // Behind an offset there is less than the whole buffer left, and nothing beyond it is written.
    if (startOffset > bufferSize) return;
    const bool all = wholeBuffer || bufferSize <= count;
    const unsigned long long wanted = all ? bufferSize : count;
    WriteCharArray2File(bufferStart + startOffset, std::min(wanted, bufferSize - startOffset));
}

void FileBufferStream::WriteCharArray2File(const char* data, unsigned long long count) {
    WriteBytes(data, count);
}

void FileBufferStream::ReadCharArray2File(char* data, unsigned long long count) {
    ReadSome(data, count);
}

bool FileBufferStream::ReadBytes(void* data, unsigned long long count) {
    return ReadSome(static_cast<char*>(data), count) == count;
}

unsigned long long FileBufferStream::ReadSome(char* data, unsigned long long count) {
    if (!CanTransfer()) return 0;
    const unsigned long long got = std::fread(data, 1, count, file_);
    if (got != count) Fail(std::ferror(file_) != 0 ? errno : 0);
    return got;
}

void FileBufferStream::WriteBytes(const void* data, unsigned long long count) {
    if (!CanTransfer()) return;
    if (std::fwrite(data, 1, count, file_) != count) Fail(errno);
}

void FileBufferStream::Fail(int systemReason) {
    failed_ = true;
    if (systemError_ == 0) systemError_ = systemReason;
}

void FileBufferStream::DeleteBuffer() {
    // This deletes an attached external block, too. Callers never mix the two, and they rely on
    // which memory is freed when.
    delete[] bufferStart;  // NOLINT
    bufferStart = bufferCursor = nullptr;
    bufferSize = lastBlockSize_ = 0;
}
