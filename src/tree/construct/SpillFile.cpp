#include "tree/construct/SpillFile.h"

#include <algorithm>
#include <array>
#include <cerrno>

#include <fcntl.h>
#include <unistd.h>
#include <wx/translation.h>

#include "core/util/FileTools.h"
#include "core/util/IoError.h"
#include "core/util/StringTools.h"

namespace vpc {

namespace {

/// The most parts that one call of the system takes.
constexpr std::size_t partsPerCall = 1024;
/// A zone gets so much of the file at once.
constexpr unsigned long long stretchBytes = 4ULL << 20;
/// The share of all pieces that may be freed and still take room.
constexpr unsigned long long waitingShare = 32;

/// Writes all parts, going on after calls that took less than all. False, with the reason in errno,
/// when nothing is taken.
[[nodiscard]] bool writeAll(int descriptor, iovec* parts, std::size_t count, off_t position) {
    while (count != 0) {
        const ssize_t written =
            pwritev(descriptor, parts, static_cast<int>(std::min(count, partsPerCall)), position);
        if (written < 0 && errno == EINTR) continue;
        if (written == 0) errno = ENOSPC;
        if (written <= 0) return false;
        position += written;
        auto left = static_cast<std::size_t>(written);
        for (; count != 0 && left >= parts->iov_len; ++parts, --count) left -= parts->iov_len;
        if (left == 0) continue;
        parts->iov_base = static_cast<char*>(parts->iov_base) + left;
        parts->iov_len -= left;
    }
    return true;
}

}  // namespace

bool SpillFile::GivesRoomBack(const std::string& folder) {
    try {
        SpillFile probe(folder + "/vpc-probe-" +
                        FileTools::ToNativePath(StringTools::createGUID()));
        std::array<char, alignment> page{};
        std::vector<iovec> parts = {{page.data(), page.size()}};
        const unsigned long long position = probe.Reserve(page.size(), 0);
        probe.Write(position, parts);
        probe.Free(position, page.size());
        probe.GiveBack();
        return probe.givesBack_;
    } catch (const IoError&) {
        return false;
    }
}

SpillFile::SpillFile(const std::string& path)
    : path_(path), descriptor_(open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0600)) {
    if (descriptor_ < 0) Fail(wxGetTranslation("cannot be created"), errno);
    unlink(path_.c_str());
}

SpillFile::~SpillFile() {
    close(descriptor_);
}

unsigned long long SpillFile::Reserve(unsigned long long size, unsigned zone) {
    const unsigned long long whole = Aligned(size);
    Range& stretch = stretches_[zone];
    if (stretch.end - stretch.begin < whole) {
        stretch = {end_, end_ + std::max(whole, stretchBytes)};
        end_ = stretch.end;
    }
    stretch.begin += whole;
    reservedBytes_ += whole;
    bytesOnDisk_ += whole;
    return stretch.begin - whole;
}

void SpillFile::Write(unsigned long long position, std::vector<iovec>& parts) {
    if (!writeAll(descriptor_, parts.data(), parts.size(), static_cast<off_t>(position)))
        Fail(wxGetTranslation("cannot be written"), errno);
}

void SpillFile::Read(unsigned long long position, char* data, unsigned long long size) const {
    while (size != 0) {
        const ssize_t got = pread(descriptor_, data, size, static_cast<off_t>(position));
        if (got < 0 && errno == EINTR) continue;
        if (got <= 0) Fail(wxGetTranslation("cannot be read"), got < 0 ? errno : 0);
        data += got;
        position += static_cast<unsigned long long>(got);
        size -= static_cast<unsigned long long>(got);
    }
}

void SpillFile::Free(unsigned long long position, unsigned long long size) {
    const unsigned long long whole = Aligned(size);
    if (!givesBack_ || whole == 0) return;
    freed_.push_back({position, position + whole});
    freedBytes_ += whole;
    if (freedBytes_ * waitingShare >= reservedBytes_) GiveBack();
}

void SpillFile::GiveBack() {
    std::sort(freed_.begin(), freed_.end(),
              [](const Range& a, const Range& b) { return a.begin < b.begin; });
    for (std::size_t i = 0; i < freed_.size() && givesBack_;) {
        Range range = freed_[i++];
        for (; i < freed_.size() && freed_[i].begin == range.end; ++i) range.end = freed_[i].end;
        givesBack_ = fallocate(descriptor_, FALLOC_FL_PUNCH_HOLE | FALLOC_FL_KEEP_SIZE,
                               static_cast<off_t>(range.begin),
                               static_cast<off_t>(range.end - range.begin)) == 0;
        if (givesBack_) bytesOnDisk_ -= range.end - range.begin;
    }
    freed_.clear();
    freedBytes_ = 0;
}

void SpillFile::FailDamaged() const {
    Fail(wxGetTranslation("does not give back what was written to it"), 0);
}

void SpillFile::Fail(const wxString& problem, int systemReason) const {
    throw IoError(FileTools::FromNativePath(path_), problem, systemReason);
}

}  // namespace vpc
