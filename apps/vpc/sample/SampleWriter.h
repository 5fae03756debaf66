#pragma once

#include <cstdint>
#include <memory>

#include "vpc/common/Progress.h"

namespace vpc {

class ReplacementFile;

/// In which order the points of a survey flight are written: as they are measured, or the same
/// points in an order that the seed gives at random, as from photogrammetry.
enum class SampleOrder { flight, random };

/// Writes one made-up scan in one format.
class SampleWriter {
public:
    /// The most points that a LAS 1.2 header can count.
    static constexpr unsigned long long mostPointsOfLas12 = 0xffffffffULL;

    /// A survey flight, as LAS 1.2 with point format 3 or LAS 1.4 with point format 7, with 16-bit
    /// colours.
    static std::unique_ptr<SampleWriter> Las(unsigned long long points, std::uint64_t seed,
                                             int format, SampleOrder order);
    /// A survey flight as PTS text: x y z intensity red green blue.
    static std::unique_ptr<SampleWriter> Pts(unsigned long long points, std::uint64_t seed);
    /// What a scanner on a tripod sees of the made-up landscape as PTX text: a grid of columns
    /// (directions) and rows (distances) in the scanner's own frame, with its pose, a transform to
    /// the landscape's frame, and some cells in which nothing came back. As many cells hold a point
    /// as points were asked for.
    static std::unique_ptr<SampleWriter> Ptx(unsigned long long points, std::uint64_t seed);

    virtual ~SampleWriter() = default;
    SampleWriter(const SampleWriter&) = delete;
    SampleWriter& operator=(const SampleWriter&) = delete;

    /// Writes the whole scan without keeping more than some of its points. Throws
    /// CommandInterrupted when the user stops it.
    virtual void Write(ReplacementFile& file) = 0;

protected:
    SampleWriter(unsigned long long points, std::uint64_t seed);
    unsigned long long Points() const { return points_; }
    /// To be called for every point or cell: looks now and then whether the user has had enough,
    /// and shows how far the scan is.
    void Step(unsigned long long points);
    std::uint64_t Seed() const { return seed_; }

private:
    unsigned long long points_;
    std::uint64_t seed_;
    Progress progress_;
};

}  // namespace vpc
