#pragma once

#include <cstdint>

#include "OutputFile.h"

namespace vpc {

/// Writes one made-up scan in one format.
class SampleWriter {
public:
    virtual ~SampleWriter() = default;
    SampleWriter(const SampleWriter&) = delete;
    SampleWriter& operator=(const SampleWriter&) = delete;

    /// Writes the whole scan, point by point and without keeping any. Throws CommandInterrupted
    /// when the user stops it.
    virtual void Write(OutputFile& file) = 0;

protected:
    SampleWriter(unsigned long long points, std::uint64_t seed) : points_(points), seed_(seed) {}
    unsigned long long Points() const { return points_; }
    std::uint64_t Seed() const { return seed_; }
    /// To be called for every point: looks now and then whether the user wants to stop.
    static void CheckInterrupt(unsigned long long point);

private:
    unsigned long long points_;
    std::uint64_t seed_;
};

}  // namespace vpc
