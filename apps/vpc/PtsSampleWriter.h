#pragma once

#include "SampleWriter.h"

namespace vpc {

/// Writes a survey flight as PTS text: x y z intensity red green blue.
class PtsSampleWriter : public SampleWriter {
public:
    PtsSampleWriter(unsigned long long points, std::uint64_t seed) : SampleWriter(points, seed) {}
    void Write(OutputFile& file) override;
};

}  // namespace vpc
