#include "tree/construct/SpillFile.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <unistd.h>
#include <wx/translation.h>

#include "core/util/Descriptor.h"
#include "core/util/FileTools.h"
#include "core/util/IoError.h"
#include "core/util/StringTools.h"

namespace vpc {

namespace {

/// A zone gets so much of the file at once.
constexpr unsigned long long stretchBytes = 16ULL << 20;
/// The share of all pieces that is freed before room is given back, when a zone ends.
constexpr unsigned long long sharePerRound = 32;
/// Smaller holes wait for their neighbours to be freed, too.
constexpr unsigned long long worthwhileHole = 1ULL << 20;

}  // namespace

bool SpillFile::GivesRoomBack(const std::string& folder) {
    try {
        SpillFile probe(folder + "/vpc-probe-" +
                        FileTools::ToNativePath(StringTools::createGUID()));
        const std::array<char, alignment> page{};
        const unsigned long long position = probe.Reserve(page.size(), 0);
        probe.Write(position, page.data(), page.size());
        probe.Free(position, page.size(), 0);
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

void SpillFile::Write(unsigned long long position, const char* data, unsigned long long size) {
    const int reason = writeAt(descriptor_, data, size, position);
    if (reason != 0) Fail(wxGetTranslation("cannot be written"), reason);
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

void SpillFile::Free(unsigned long long position, unsigned long long size, unsigned zone) {
    const unsigned long long whole = Aligned(size);
    if (!givesBack_ || whole == 0) return;
    const bool endsZone = std::exchange(lastFreedZone_, zone) != zone;
    if (endsZone && newlyFreedBytes_ * sharePerRound >= reservedBytes_) GiveBack(worthwhileHole);
    freed_.push_back({position, position + whole});
    newlyFreedBytes_ += whole;
    freedBytes_ += whole;
    if (freedBytes_ * mostWaitingShare >= bytesOnDisk_) GiveBack(alignment);
}

void SpillFile::GiveBack(unsigned long long smallest) {
    std::sort(freed_.begin(), freed_.end(),
              [](const Range& a, const Range& b) { return a.begin < b.begin; });
    std::vector<Range> kept;
    for (std::size_t i = 0; i < freed_.size() && givesBack_;) {
        Range range = freed_[i++];
        for (; i < freed_.size() && freed_[i].begin == range.end; ++i) range.end = freed_[i].end;
        if (range.end - range.begin < smallest)
            kept.push_back(range);
        else
            Punch(range);
    }
    freed_ = std::move(kept);
    newlyFreedBytes_ = 0;
}

void SpillFile::Punch(const Range& range) {
    const unsigned long long size = range.end - range.begin;
    givesBack_ = fallocate(descriptor_, FALLOC_FL_PUNCH_HOLE | FALLOC_FL_KEEP_SIZE,
                           static_cast<off_t>(range.begin), static_cast<off_t>(size)) == 0;
    if (!givesBack_) return;
    freedBytes_ -= size;
    bytesOnDisk_ -= size;
}

void SpillFile::FailDamaged() const {
    Fail(wxGetTranslation("does not give back what was written to it"), 0);
}

void SpillFile::Fail(const wxString& problem, int systemReason) const {
    throw IoError(FileTools::FromNativePath(path_), problem, systemReason);
}

}  // namespace vpc
