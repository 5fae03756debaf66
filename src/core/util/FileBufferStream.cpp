#include "core/util/FileBufferStream.h"

#include <algorithm>
#include <array>
#include <limits>
#include <new>

#include "core/util/FileTools.h"

namespace {

/// The most characters that a string read from a file may hold; part of the file's design.
constexpr std::size_t scratchCharacters = 1024;

const char* openMode(VpcFileMode mode, bool append) {
    if (mode != FileModeWrite) return "rb";
    return append ? "ab" : "wb";
}

}  // namespace

FileBufferStream::~FileBufferStream() {
    StreamClose();
    ReleaseBuffer();
}

bool FileBufferStream::StreamOpen(const wxString& path, VpcFileMode mode, bool append) {
    if (file_ != nullptr) {
        failed_ = true;
        return false;
    }
    file_ = std::fopen(FileTools::ToNativePath(path).c_str(), openMode(mode, append));
    failed_ = file_ == nullptr;
    return !failed_;
}

void FileBufferStream::StreamClose() {
    if (file_ == nullptr) return;
    // fclose gives the handle up even where it fails, so it is cleared either way.
    if (std::fclose(file_) != 0) failed_ = true;
    file_ = nullptr;
}

std::uint64_t FileBufferStream::StreamPosition() {
    if (file_ == nullptr) return std::numeric_limits<std::uint64_t>::max();
    return static_cast<std::uint64_t>(ftello(file_));
}

void FileBufferStream::StreamSeek(std::uint64_t offset) {
    if (!IsStreamGood()) return;
    if (offset > static_cast<std::uint64_t>(std::numeric_limits<off_t>::max()) ||
        fseeko(file_, static_cast<off_t>(offset), SEEK_SET) != 0)
        failed_ = true;
}

std::uint64_t FileBufferStream::StreamSize() {
    if (!IsStreamGood()) return 0;
    const std::uint64_t position = StreamPosition();
    if (fseeko(file_, 0, SEEK_END) != 0) {
        failed_ = true;
        return 0;
    }
    const std::uint64_t size = StreamPosition();
    StreamSeek(position);
    return failed_ ? 0 : size;
}

wxString FileBufferStream::StreamReadString(std::uint64_t count) {
    std::array<char32_t, scratchCharacters> scratch{};
    const bool untilZero = count == static_cast<std::uint64_t>(wxString::npos);
    if (!untilZero && count > scratch.size()) {
        failed_ = true;
        return {};
    }
    const std::uint64_t wanted = untilZero ? scratch.size() : count;
    ReadSome(reinterpret_cast<char*>(scratch.data()), wanted * sizeof(char32_t));
    const auto* end = scratch.data() + wanted;
    if (untilZero) end = std::find(scratch.data(), end, U'\0');
    wxString text;
    text.reserve(static_cast<std::size_t>(end - scratch.data()));
    for (const auto* c = scratch.data(); c != end; ++c)
        text += wxUniChar(static_cast<std::uint32_t>(*c));
    return text;
}

void FileBufferStream::StreamWriteString(const wxString& text) {
    for (const wxUniChar c : text) WriteValue(static_cast<std::uint32_t>(c.GetValue()));
}

char* FileBufferStream::CreateInternalBuffer(std::uint64_t size) {
    DeleteBuffer();
    bufferStart_ = new char[size];  // NOLINT: the buffer may be the caller's, so no smart pointer
    bufferCursor_ = bufferStart_;
    bufferSize_ = size;
    externalBuffer_ = false;
    return bufferStart_;
}

void FileBufferStream::AttachExternalBuffer(char* block, std::uint64_t size) {
    DeleteBuffer();
    bufferStart_ = bufferCursor_ = block;
    bufferSize_ = size;
    externalBuffer_ = true;
}

void FileBufferStream::ReleaseBuffer() {
    if (externalBuffer_) {
        bufferStart_ = bufferCursor_ = nullptr;
        bufferSize_ = 0;
        externalBuffer_ = false;
    } else {
        DeleteBuffer();
    }
}

bool FileBufferStream::ReadFile2Buffer() {
    if (!IsStreamGood()) return false;
    const std::uint64_t size = StreamSize();
    StreamSeek(0);
    if (failed_) return false;
    bufferStart_ = nullptr;
    CreateInternalBuffer(size);
    lastBlockSize_ = ReadSome(bufferStart_, size);
    return true;
}

bool FileBufferStream::ReadFileBlock2Buffer(std::uint64_t offset, std::uint64_t size) {
    lastBlockSize_ = 0;
    if (size > bufferSize_) CreateInternalBuffer(size);
    if (!IsStreamGood()) return false;
    StreamSeek(offset);
    lastBlockSize_ = ReadSome(bufferStart_, bufferSize_);
    return true;
}

void FileBufferStream::WriteBuffer2File(std::uint64_t startOffset, bool wholeBuffer,
                                        std::uint64_t count) {
    const bool all = wholeBuffer || bufferSize_ <= count;
    WriteCharArray2File(bufferStart_ + startOffset, all ? bufferSize_ : count);
}

void FileBufferStream::WriteCharArray2File(const char* data, std::uint64_t count) {
    WriteBytes(data, count);
}

void FileBufferStream::ReadCharArray2File(char* data, std::uint64_t count) {
    ReadSome(data, count);
}

bool FileBufferStream::ReadBytes(void* data, std::uint64_t count) {
    return ReadSome(static_cast<char*>(data), count) == count;
}

std::uint64_t FileBufferStream::ReadSome(char* data, std::uint64_t count) {
    if (!IsStreamGood()) return 0;
    const std::uint64_t got = std::fread(data, 1, count, file_);
    if (got != count) failed_ = true;
    return got;
}

void FileBufferStream::WriteBytes(const void* data, std::uint64_t count) {
    if (!IsStreamGood()) return;
    if (std::fwrite(data, 1, count, file_) != count) failed_ = true;
}

void FileBufferStream::DeleteBuffer() {
    // Deletes an attached external block too: callers never mix the two, and which memory is
    // freed when must not change.
    delete[] bufferStart_;  // NOLINT
    bufferStart_ = bufferCursor_ = nullptr;
    bufferSize_ = 0;
}
