#include "core/util/DirectWriter.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <limits>
#include <new>
#include <utility>

#include <fcntl.h>
#include <linux/aio_abi.h>
#include <sys/syscall.h>
#include <unistd.h>
#include <wx/translation.h>

#include "core/util/IoError.h"

namespace vpc {

namespace {

/// The most parts that are written at a time.
constexpr unsigned mostBusy = 16;

/// By which the system's answer is matched with its part.
std::uint64_t idOf(const DirectWriter::Part& part) {
    return reinterpret_cast<std::uintptr_t>(&part);
}

/// Whether the system may take in the usual way what it refused, by the result of the request. A
/// disk that has failed takes nothing, although the cache would.
bool mayTakeOtherwise(long long result) {
    return result == -EINVAL || result == -EAGAIN || result == -EOPNOTSUPP;
}

}  // namespace

DirectWriter::Part::Part()
    : bytes(static_cast<char*>(std::aligned_alloc(DirectWriter::pageSize, partSize))) {
    if (bytes == nullptr) throw std::bad_alloc();
}

std::unique_ptr<DirectWriter> DirectWriter::Open(const std::string& path, unsigned long long size,
                                                 const wxString& name) {
    std::unique_ptr<DirectWriter> writer(new DirectWriter(path, name));
    if (!writer->Begin(size)) writer.reset();
    return writer;
}

DirectWriter::DirectWriter(const std::string& path, const wxString& name)
    : name_(name), direct_(path, O_WRONLY | O_DIRECT), cached_(path, O_WRONLY) {
}

bool DirectWriter::Begin(unsigned long long size) {
    // The cache's pages may be larger, and would then hold parts of both ways.
    return sysconf(_SC_PAGESIZE) == long{pageSize} && direct_.Number() >= 0 &&
           cached_.Number() >= 0 &&
           size <= static_cast<unsigned long long>(std::numeric_limits<off_t>::max()) &&
           ftruncate(direct_.Number(), static_cast<off_t>(size)) == 0 &&
           syscall(SYS_io_setup, mostBusy, &queue_) == 0;
}

DirectWriter::~DirectWriter() {
    while (!busy_.empty()) Collect(1);
    if (queue_ != 0) syscall(SYS_io_destroy, queue_);
}

DirectWriter::PartHandle DirectWriter::Take() {
    if (free_.empty()) return std::make_unique<Part>();
    PartHandle part = std::move(free_.back());
    free_.pop_back();
    return part;
}

void DirectWriter::Write(PartHandle part) {
    if (!HasTurn(part->size)) {
        PutIntoCache(*part, 0);
        PutBack(std::move(part));
        return RequireAllWritten();
    }
    iocb request{};
    request.aio_data = idOf(*part);
    request.aio_lio_opcode = IOCB_CMD_PWRITE;
    request.aio_fildes = static_cast<std::uint32_t>(direct_.Number());
    request.aio_buf = reinterpret_cast<std::uintptr_t>(part->bytes.get() + part->begin);
    request.aio_nbytes = part->size;
    request.aio_offset = static_cast<std::int64_t>(part->position);
    busy_.push_back(std::move(part));
    std::array<iocb*, 1> requests{&request};
    if (syscall(SYS_io_submit, queue_, 1L, requests.data()) != 1) Complete(request.aio_data, 0);
    RequireAllWritten();
}

bool DirectWriter::HasTurn(std::size_t size) {
    if (busy_.size() >= mostBusy) Collect(0);
    if (busy_.size() < mostBusy) return true;
    if (size <= cacheLeft_) {
        cacheLeft_ -= size;
        return false;
    }
    Collect(1);
    return true;
}

void DirectWriter::Finish() {
    while (!busy_.empty()) Collect(1);
    RequireAllWritten();
}

void DirectWriter::RequireAllWritten() const {
    if (failure_ != 0) throw IoError(name_, wxGetTranslation("cannot be written"), failure_);
}

void DirectWriter::Collect(long atLeast) {
    std::array<io_event, mostBusy> events{};
    const long count = syscall(SYS_io_getevents, queue_, atLeast, static_cast<long>(events.size()),
                               events.data(), nullptr);
    if (count < 0 && errno != EINTR) return GiveUp(errno);
    for (long i = 0; i < count; ++i) {
        const io_event& event = events[static_cast<std::size_t>(i)];
        Complete(event.data, event.res);
    }
}

void DirectWriter::Complete(std::uint64_t id, long long written) {
    const auto place = std::find_if(busy_.begin(), busy_.end(),
                                    [&](const PartHandle& part) { return idOf(*part) == id; });
    if (place == busy_.end()) return;
    if (written < 0 && !mayTakeOtherwise(written))
        failure_ = static_cast<int>(-written);
    else
        PutIntoCache(**place, static_cast<std::size_t>(std::max(written, 0LL)));
    free_.push_back(std::move(*place));
    busy_.erase(place);
}

/// Where the system no longer tells what is written, nothing is known to be. When the queue goes,
/// the system has done with all parts.
void DirectWriter::GiveUp(int reason) {
    syscall(SYS_io_destroy, std::exchange(queue_, 0));
    busy_.clear();
    failure_ = reason;
}

void DirectWriter::WriteThroughCache(const char* data, std::size_t size,
                                     unsigned long long position) {
    PutIntoCache(data, size, position);
    RequireAllWritten();
}

void DirectWriter::PutIntoCache(const char* data, std::size_t size, unsigned long long position) {
    const int reason = writeAt(cached_.Number(), data, size, position);
    if (reason != 0) failure_ = reason;
}

}  // namespace vpc
