#pragma once

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstring>

#include <wx/string.h>

/// How a FileBufferStream opens its file. Any value other than FileModeWrite opens for reading.
enum VpcFileMode : std::uint32_t { FileModeRead = 0, FileModeWrite = 1 };

/// A binary file joined with a memory buffer that has a cursor.
///
/// The file side reads and writes single values at the file position or at an absolute offset;
/// the buffer side packs and unpacks values in memory, and whole blocks travel between the two.
/// All values are in the host's native byte order (little-endian).
///
/// Failures do not throw. They show in the stream's state, which works like that of a standard
/// stream: a short read, a failed write or a failed open puts the stream into the fail state,
/// where every further file operation does nothing, until the next successful StreamOpen or
/// until StreamClearState. A typed read that fails returns 0.
///
/// One thread at a time; no copies.
class FileBufferStream {
public:
    FileBufferStream() = default;
    FileBufferStream(const FileBufferStream&) = delete;
    FileBufferStream& operator=(const FileBufferStream&) = delete;
    /// Closes the file and frees an internal buffer, never an external one.
    ~FileBufferStream();

    // --- The fields; bufferCursor - bufferStart tells callers how far they have come --------

    /// The mode given to the last StreamOpen.
    VpcFileMode mode = FileModeRead;
    /// The path of the last file opened, as the system takes it; cut off after 4095 bytes.
    std::array<char, 4096> fileName{};
    /// True while the buffer belongs to the caller.
    bool externalBuffer = false;
    /// The buffer's capacity in bytes.
    unsigned long long bufferSize = 0;
    /// The buffer, null where there is none.
    char* bufferStart = nullptr;
    /// The next byte to read or write in the buffer.
    char* bufferCursor = nullptr;

    // --- The file ---------------------------------------------------------------------------

    /// Opens `path`: reading, writing from an empty file, or writing at the end (`append`).
    /// Fails when a file is already open. Returns whether the stream is good afterwards.
    bool StreamOpen(const wxString& path, VpcFileMode openMode, bool append = false);
    bool IsStreamOpen() const { return file_ != nullptr; }
    /// Flushes and closes the file; the memory buffer stays. A failure to flush or to close
    /// (the disk is full, say) leaves the fail state set.
    void StreamClose();
    /// True while no operation has failed, the last StreamClose included.
    bool IsStreamGood() const { return !failed_; }
    /// True when the system has failed to read or write the open file. Reaching its end is no such
    /// failure. StreamClearState does not reset this.
    bool HasSystemError() const { return file_ != nullptr && std::ferror(file_) != 0; }
    /// The system's reason (errno) for the first failure since the last StreamOpen, that call
    /// included; 0 where nothing has failed or the system gave no reason, as for the end of the
    /// file. StreamClearState does not forget it.
    int SystemError() const { return systemError_; }
    /// Forgets an earlier failure, so that a reader can go on after a block that the file's end
    /// cut short.
    void StreamClearState() { failed_ = false; }
    /// Asks the system to begin writing to the disk what it has got of the file, and does not wait.
    void StreamStartWriteBack();
    /// Has the system set room aside for the bytes `begin` to `end` - 1 of a new file, where it
    /// can.
    void StreamPreallocate(unsigned long long begin, unsigned long long end);
    /// The current position in the file; all ones when the system cannot tell it.
    unsigned long long StreamPosition();
    /// Moves the file position to `offset` bytes from the start.
    void StreamSeek(unsigned long long offset);
    /// The file's length in bytes, measured by seeking to its end and back; 0 on failure.
    unsigned long long StreamSize();

    double StreamReadDouble() { return ReadValue<double>(); }
    bool StreamReadBool() { return ReadValue<std::uint8_t>() != 0; }
    unsigned long long StreamReadUint64() { return ReadValue<unsigned long long>(); }
    std::uint16_t StreamReadUint16() { return ReadValue<std::uint16_t>(); }
    /// A string of `count` characters of 4 bytes each. The scratch area holds 1024 characters;
    /// a longer string cannot be read and puts the stream into the fail state. wxString::npos
    /// reads as many as the scratch area holds and takes those before the first zero.
    wxString StreamReadString(unsigned long long count);

    void StreamWriteDouble(double value) { WriteValue(value); }
    void StreamWriteBool(bool value) { WriteValue(static_cast<std::uint8_t>(value ? 1 : 0)); }
    void StreamWriteUint64(unsigned long long value) { WriteValue(value); }
    void StreamWriteUint16(std::uint16_t value) { WriteValue(value); }
    /// Writes the characters only, 4 bytes each: no length and no terminator.
    void StreamWriteString(const wxString& text);

    // Reads at an absolute offset; the position is left just after the value.
    double StreamReadAtDouble(unsigned long long offset) {
        return Seeked(offset).StreamReadDouble();
    }
    bool StreamReadAtBool(unsigned long long offset) { return Seeked(offset).StreamReadBool(); }
    unsigned long long StreamReadAtUint64(unsigned long long offset) {
        return Seeked(offset).StreamReadUint64();
    }
    std::uint16_t StreamReadAtUint16(unsigned long long offset) {
        return Seeked(offset).StreamReadUint16();
    }
    wxString StreamReadAtString(unsigned long long offset, unsigned long long count) {
        return Seeked(offset).StreamReadString(count);
    }

    // Writes at an absolute offset; the position is left just after the value.
    void StreamWriteAtDouble(unsigned long long offset, double value) {
        Seeked(offset).StreamWriteDouble(value);
    }
    void StreamWriteAtBool(unsigned long long offset, bool value) {
        Seeked(offset).StreamWriteBool(value);
    }
    void StreamWriteAtUint64(unsigned long long offset, unsigned long long value) {
        Seeked(offset).StreamWriteUint64(value);
    }
    void StreamWriteAtUint16(unsigned long long offset, std::uint16_t value) {
        Seeked(offset).StreamWriteUint16(value);
    }
    void StreamWriteAtString(unsigned long long offset, const wxString& text) {
        Seeked(offset).StreamWriteString(text);
    }

    // --- The buffer -------------------------------------------------------------------------

    /// Replaces the buffer by a new one of `size` bytes, owned by the stream; returns it.
    /// The old buffer is deleted whoever owns it: never call this with an external buffer.
    char* CreateInternalBuffer(unsigned long long size);
    /// Uses `block`, which stays the caller's, as the buffer. The old buffer is deleted whoever
    /// owns it.
    void AttachExternalBuffer(char* block, unsigned long long size);
    /// Gives up the buffer and deletes it unless it is external.
    void ReleaseBuffer();

    // --- Between file and buffer --------------------------------------------------------------

    /// Reads the whole file into a new buffer with the cursor at its start. The old buffer is
    /// not released: call this once, on a fresh stream. False when the stream is not good.
    bool ReadFile2Buffer();
    /// Reads from `offset` as many bytes as the buffer holds: a buffer smaller than `size` is
    /// first replaced by one of `size` bytes, a larger one is kept with its cursor and filled
    /// whole. False when the stream is not good. A block that the file's end cuts short gives true
    /// and the fail state, and LastBlockSize tells how many bytes came from the file.
    bool ReadFileBlock2Buffer(unsigned long long offset, unsigned long long size);
    /// How many bytes the last ReadFile2Buffer or ReadFileBlock2Buffer read from the file; 0 for a
    /// new buffer.
    unsigned long long LastBlockSize() const { return lastBlockSize_; }
    /// Writes the bytes from `startOffset` of the buffer: all `bufferSize` of them when
    /// `wholeBuffer` or when the buffer is no larger than `count`, otherwise `count`.
    void WriteBuffer2File(unsigned long long startOffset, bool wholeBuffer,
                          unsigned long long count);
    /// Writes `count` bytes from `data`, if the stream is good.
    void WriteCharArray2File(const char* data, unsigned long long count);
    /// Reads (despite its name) `count` bytes into `data`, if the stream is good.
    void ReadCharArray2File(char* data, unsigned long long count);

    // --- Values in the buffer: at the cursor, which moves on; bounds are the caller's --------

    char BufferReadChar() { return BufferRead<char>(); }
    bool BufferReadBool() { return BufferRead<std::uint8_t>() != 0; }
    std::int16_t BufferReadInt16() { return BufferRead<std::int16_t>(); }
    std::uint16_t BufferReadUint16() { return BufferRead<std::uint16_t>(); }
    std::int32_t BufferReadInt32() { return BufferRead<std::int32_t>(); }
    std::uint32_t BufferReadUint32() { return BufferRead<std::uint32_t>(); }
    unsigned long long BufferReadUint64() { return BufferRead<unsigned long long>(); }
    double BufferReadDouble() { return BufferRead<double>(); }
    void BufferReadCharArray(unsigned long long count, char* dest) {
        std::memcpy(dest, bufferCursor, count);
        bufferCursor += count;
    }

    void BufferWriteChar(char value) { BufferWrite(value); }
    void BufferWriteBool(bool value) { BufferWrite(static_cast<std::uint8_t>(value ? 1 : 0)); }
    void BufferWriteInt16(std::int16_t value) { BufferWrite(value); }
    void BufferWriteUint16(std::uint16_t value) { BufferWrite(value); }
    void BufferWriteInt32(std::int32_t value) { BufferWrite(value); }
    void BufferWriteUint32(std::uint32_t value) { BufferWrite(value); }
    void BufferWriteUint64(unsigned long long value) { BufferWrite(value); }
    void BufferWriteDouble(double value) { BufferWrite(value); }

private:
    template <class T>
    T ReadValue() {
        T value{};
        if (!ReadBytes(&value, sizeof value)) value = T{};
        return value;
    }
    template <class T>
    void WriteValue(T value) {
        WriteBytes(&value, sizeof value);
    }
    template <class T>
    T BufferRead() {
        T value;
        std::memcpy(&value, bufferCursor, sizeof value);
        bufferCursor += sizeof value;
        return value;
    }
    template <class T>
    void BufferWrite(T value) {
        std::memcpy(bufferCursor, &value, sizeof value);
        bufferCursor += sizeof value;
    }
    FileBufferStream& Seeked(unsigned long long offset) {
        StreamSeek(offset);
        return *this;
    }
    /// Whether a transfer may begin. Without an open file it sets the fail state, as any failed
    /// transfer does.
    bool CanTransfer() {
        if (file_ == nullptr) failed_ = true;
        return !failed_;
    }
    /// Reads exactly `count` bytes or sets the fail state; returns whether all came.
    bool ReadBytes(void* data, unsigned long long count);
    /// Reads up to `count` bytes; fewer set the fail state. Returns how many came.
    unsigned long long ReadSome(char* data, unsigned long long count);
    void WriteBytes(const void* data, unsigned long long count);
    void DeleteBuffer();
    /// Puts the stream into the fail state; the first reason that the system gave stays.
    void Fail(int systemReason);

    std::FILE* file_ = nullptr;
    bool failed_ = false;
    int systemError_ = 0;
    unsigned long long lastBlockSize_ = 0;
};
