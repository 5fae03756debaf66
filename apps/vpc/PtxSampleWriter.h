#pragma once

#include "SampleScene.h"
#include "SampleWriter.h"

namespace vpc {

/// Writes what a scanner on a tripod sees of the made-up landscape as PTX text: a grid of columns
/// (directions) and rows (distances) in the scanner's own frame, with its pose, a transform to
/// the landscape's frame, and some cells in which nothing came back. The cells that hold a point
/// are as many as were asked for.
class PtxSampleWriter : public SampleWriter {
public:
    PtxSampleWriter(unsigned long long points, std::uint64_t seed);
    void Write(OutputFile& file) override;

private:
    void WriteHeader(OutputFile& file) const;
    void WriteCell(OutputFile& file, unsigned long long column, double distanceShare);
    unsigned long long PointsInColumn(unsigned long long column) const;

    SampleScene scene_;
    SampleRandom random_;
    unsigned long long columns_;
    unsigned long long rows_;
    double reach_;
    double scannerZ_;
};

}  // namespace vpc
