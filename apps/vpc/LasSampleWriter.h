#pragma once

#include <array>

#include "SampleFlight.h"
#include "SampleWriter.h"

namespace vpc {

/// Writes a survey flight as LAS 1.2 with point format 3 or LAS 1.4 with point format 7, colours
/// sixteen bits deep.
class LasSampleWriter : public SampleWriter {
public:
    /// The most points that a LAS 1.2 header can count.
    static constexpr unsigned long long mostPointsOfFormat3 = 0xffffffffULL;

    LasSampleWriter(unsigned long long points, std::uint64_t seed, int format);
    void Write(OutputFile& file) override;

private:
    using Steps = std::array<std::int32_t, 3>;

    void WriteHeader(OutputFile& file) const;
    void WritePoint(OutputFile& file, const SamplePoint& point, const SampleFlight& flight);

    bool format7_;
    Steps minimum_;
    Steps maximum_;
};

}  // namespace vpc
