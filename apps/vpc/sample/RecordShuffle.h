#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include <wx/string.h>

#include "core/util/FileHandle.h"
#include "vpc/sample/SampleGenerator.h"

namespace vpc {

/// Writes records of one size to a file in a random order, in which every order is as likely as any
/// other. It takes about 300 MiB of memory at most, also for many gigabytes of records, and no
/// other file: every record goes to one of many parts of the file, which is drawn for it, and when
/// all are there, one part after the other is shuffled in memory. Failures of the file throw
/// IoError.
class RecordShuffle {
public:
    /// \param file     a file that is there
    /// \param begin    where in the file the first record goes; what is before it is not touched
    /// \param records  how many records will be added, exactly
    /// \param seed     which order; the same seed gives the same
    RecordShuffle(const wxString& file, std::uint64_t begin, std::size_t recordSize,
                  std::uint64_t records, std::uint64_t seed);

    void Add(const char* record);
    /// Brings the file into its final state, after the last record.
    void Finish();

private:
    struct Part {
        /// Where in the file the next records of this part go; at last, where the part ends.
        std::uint64_t end = 0;
        std::string waiting;
    };

    /// Gives every part as much room as it will need, which the same draws tell beforehand.
    void LayOut(std::uint64_t records, SampleRandom random);
    void Reserve(std::uint64_t end) const;
    void Flush(Part& part);
    void Shuffle(std::string& records);
    void Read(std::uint64_t position, std::string& bytes);
    void Write(std::uint64_t position, const std::string& bytes);
    void Seek(std::uint64_t position);
    [[noreturn]] void Fail(const wxString& problem, int reason) const;

    wxString name_;
    FileHandle file_;
    std::uint64_t begin_;
    std::size_t recordSize_;
    SampleRandom random_;
    std::vector<Part> parts_;
    /// The bytes that may wait in one part.
    std::size_t mostWaiting_;
};

}  // namespace vpc
