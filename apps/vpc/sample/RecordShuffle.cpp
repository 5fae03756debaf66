#include "vpc/sample/RecordShuffle.h"

#include <algorithm>
#include <cerrno>

#include <fcntl.h>
#include <wx/translation.h>

#include "core/util/FileTools.h"
#include "core/util/IoError.h"
#include "vpc/common/Interrupt.h"

namespace vpc {

namespace {

/// A part of this many bytes, more or less, is shuffled within the processor's cache. Parts get
/// larger only where there would be too many of them to write them in pieces of some size.
constexpr std::uint64_t partSize = std::uint64_t{1} << 20;
constexpr std::uint64_t mostParts = 65536;
/// The bytes of all records that wait to be written to their parts.
constexpr std::uint64_t waitingSize = std::uint64_t{256} << 20;

std::size_t partCount(std::uint64_t bytes) {
    return static_cast<std::size_t>(std::min(bytes / partSize + 1, mostParts));
}

/// A number from 0 to count - 1.
std::size_t drawBelow(std::size_t count, SampleRandom& random) {
    return static_cast<std::size_t>(random.Unit() * static_cast<double>(count));
}

}  // namespace

RecordShuffle::RecordShuffle(const wxString& file, std::uint64_t begin, std::size_t recordSize,
                             std::uint64_t records, std::uint64_t seed)
    : name_(file),
      file_(std::fopen(FileTools::ToNativePath(file).c_str(), "r+be")),
      begin_(begin),
      recordSize_(recordSize),
      // These must not be the numbers that the points are made of.
      random_(~seed),
      parts_(partCount(records * recordSize)),
      mostWaiting_(static_cast<std::size_t>(waitingSize / parts_.size())) {
    if (file_ == nullptr) Fail(wxGetTranslation("cannot be opened"), errno);
    // What is written and read is large: a second buffer would only cost a second copy.
    std::setvbuf(file_.get(), nullptr, _IONBF, 0);
    Reserve(begin + records * recordSize);
    LayOut(records, random_);
}

void RecordShuffle::Reserve(std::uint64_t end) const {
    // The parts grow side by side; without this they would lie in small pieces all over the disk.
    // Where the file system cannot do it, the shuffle goes on without.
    const int reason = posix_fallocate(fileno(file_.get()), 0, static_cast<off_t>(end));
    if (reason == ENOSPC || reason == EFBIG) Fail(wxGetTranslation("cannot be written"), reason);
}

void RecordShuffle::LayOut(std::uint64_t records, SampleRandom random) {
    std::vector<std::uint64_t> counts(parts_.size());
    for (std::uint64_t i = 0; i < records; ++i) {
        Interrupt::CheckSometimes(i);
        ++counts[drawBelow(parts_.size(), random)];
    }
    std::uint64_t end = begin_;
    for (std::size_t i = 0; i < parts_.size(); ++i) {
        parts_[i].end = end;
        const std::uint64_t bytes = counts[i] * recordSize_;
        parts_[i].waiting.reserve(std::min(mostWaiting_, static_cast<std::size_t>(bytes)));
        end += bytes;
    }
}

void RecordShuffle::Add(const char* record) {
    Part& part = parts_[drawBelow(parts_.size(), random_)];
    if (part.waiting.size() + recordSize_ > mostWaiting_) Flush(part);
    part.waiting.append(record, recordSize_);
}

void RecordShuffle::Finish() {
    std::uint64_t position = begin_;
    std::string records;
    for (Part& part : parts_) {
        Interrupt::Check();
        Flush(part);
        records.resize(static_cast<std::size_t>(part.end - position));
        Read(position, records);
        Shuffle(records);
        Write(position, records);
        position = part.end;
    }
    if (std::fclose(file_.release()) != 0) Fail(wxGetTranslation("cannot be written"), errno);
}

void RecordShuffle::Flush(Part& part) {
    Write(part.end, part.waiting);
    part.end += part.waiting.size();
    part.waiting.clear();
}

void RecordShuffle::Shuffle(std::string& records) {
    const auto record = [&](std::size_t index) { return records.data() + index * recordSize_; };
    for (std::size_t left = records.size() / recordSize_; left > 1; --left) {
        char* const last = record(left - 1);
        std::swap_ranges(last, last + recordSize_, record(drawBelow(left, random_)));
    }
}

void RecordShuffle::Read(std::uint64_t position, std::string& bytes) {
    Seek(position);
    if (std::fread(bytes.data(), 1, bytes.size(), file_.get()) != bytes.size())
        Fail(wxGetTranslation("cannot be read"), std::ferror(file_.get()) != 0 ? errno : 0);
}

void RecordShuffle::Write(std::uint64_t position, const std::string& bytes) {
    Seek(position);
    if (std::fwrite(bytes.data(), 1, bytes.size(), file_.get()) != bytes.size())
        Fail(wxGetTranslation("cannot be written"), errno);
}

void RecordShuffle::Seek(std::uint64_t position) {
    if (fseeko(file_.get(), static_cast<off_t>(position), SEEK_SET) != 0)
        Fail(wxGetTranslation("cannot be written"), errno);
}

void RecordShuffle::Fail(const wxString& problem, int reason) const {
    throw IoError(name_, problem, reason);
}

}  // namespace vpc
