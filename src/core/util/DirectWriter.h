#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include <wx/string.h>

#include "core/util/Descriptor.h"

namespace vpc {

/// Writes large parts of a file to the disk past the system's cache, several at a time, while its
/// user goes on. To copy them into the cache takes the system longer than a fast disk takes to
/// write them, and a file that is larger than the cache has to wait for the disk in any case.
///
/// Where the disk is slower than the user, some parts go to the cache after all, as many as it
/// takes without making anyone wait; beyond them the user waits for the disk.
///
/// What is written so are whole pages. What is no whole page goes through the cache, by a call that
/// reads nothing: the C library's streams read the page that they seek to, and the system may then
/// keep its neighbours, too, as they were before they are written.
class DirectWriter {
public:
    static constexpr std::size_t pageSize = 4096;
    static constexpr std::size_t partSize = std::size_t{1} << 19;

    /// Memory for `partSize` bytes that follow one another in the file.
    struct Part {
        /// Throws std::bad_alloc.
        Part();
        struct Free {
            void operator()(char* memory) const { std::free(memory); }
        };
        std::unique_ptr<char, Free> bytes;
        /// Those that are being written, and where the first of them stands in the file.
        std::size_t begin = 0;
        std::size_t size = 0;
        unsigned long long position = 0;
    };
    using PartHandle = std::unique_ptr<Part>;

    /// Null where the system or the file system has no such way.
    ///
    /// \param path the file, which exists
    /// \param size its size at the end, which it gets at once: what makes a file longer has to wait
    /// \param name the file's name in messages
    static std::unique_ptr<DirectWriter> Open(const std::string& path, unsigned long long size,
                                              const wxString& name);
    /// Waits until nothing is being written.
    ~DirectWriter();
    DirectWriter(const DirectWriter&) = delete;
    DirectWriter& operator=(const DirectWriter&) = delete;

    /// A part to be filled.
    [[nodiscard]] PartHandle Take();
    /// Takes back a part with nothing to write.
    void PutBack(PartHandle part) { free_.push_back(std::move(part)); }
    /// Begins to write what `begin`, `size` and `position` of the part say, all of them multiples
    /// of `pageSize`. Throws IoError when this or an earlier part could not be written.
    void Write(PartHandle part);
    /// Writes bytes of any place and size through the cache. Throws as Write does.
    void WriteThroughCache(const char* data, std::size_t size, unsigned long long position);
    /// Waits until all is written. Throws IoError when some part could not be.
    void Finish();

private:
    DirectWriter(const std::string& path, const wxString& name);
    [[nodiscard]] bool Begin(unsigned long long size);
    /// True when the disk has time for one more part; it is waited for where the cache should not
    /// take so many bytes.
    [[nodiscard]] bool HasTurn(std::size_t size);
    /// Takes back the parts that are written, and waits for some if need be.
    void Collect(long atLeast);
    void Complete(std::uint64_t id, long long written);
    void GiveUp(int reason);
    void PutIntoCache(const char* data, std::size_t size, unsigned long long position);
    void PutIntoCache(const Part& part, std::size_t done) {
        PutIntoCache(part.bytes.get() + part.begin + done, part.size - done, part.position + done);
    }
    void RequireAllWritten() const;

    wxString name_;
    Descriptor direct_;
    Descriptor cached_;
    /// The system's name for the queue of writes (aio_context_t).
    unsigned long queue_ = 0;
    std::vector<PartHandle> free_;
    /// Parts that are being written.
    std::vector<PartHandle> busy_;
    /// Bytes that may still go to the cache.
    unsigned long long cacheLeft_ = 1ULL << 30;
    /// Why a part could not be written (errno); 0 where all could.
    int failure_ = 0;
};

}  // namespace vpc
