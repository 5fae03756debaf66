#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <vector>

#include "support/PointRecord.h"

namespace vpc::test {

// Scans made for the tests. Each writer returns the points that a reader must deliver from its
// file, in their order, so that tests know without any reader what a run makes of them.

/// How the points of a made-up scan lie in space; Corner fills the cube from 0 to 100, with a dense
/// column at its edge.
enum class CloudShape { Uniform, Clusters, Flat, Line, Duplicates, FarAway, Corner };

struct Cloud {
    CloudShape shape = CloudShape::Uniform;
    std::size_t points = 1000;
    unsigned seed = 1;
    /// Largest colour value; above 255 the colours are 16-bit ones.
    unsigned largestColour = 255;
};

/// Points with random coordinates, colours and intensities.
std::vector<PointRecord> makeCloud(const Cloud& cloud);

struct LasLayout {
    int minorVersion = 2;
    int format = 3;
    /// Bytes that every record has beyond those of its format.
    int extraBytes = 0;
    double scale = 0.001;
    double offset = -1234.5;
};

/// Bytes between header and points of every LAS scan that writeLas writes.
inline constexpr std::uint32_t lasGap = 10;

/// Coordinates are rounded to the layout's grid, intensities to 16 bits; source and marker are as
/// readers set them.
std::vector<PointRecord> writeLas(const std::filesystem::path& path, const LasLayout& layout,
                                  const std::vector<PointRecord>& points, int sourceIndex = 0);

/// One block for every list of `blocks`, with 3, 4, 6 or 7 columns.
std::vector<PointRecord> writePts(const std::filesystem::path& path, int columns,
                                  const std::vector<std::vector<PointRecord>>& blocks,
                                  int sourceIndex = 0);

struct PtxScan {
    std::vector<PointRecord> points;
    /// The matrix as the file holds it: rows of the rotation, then the translation.
    std::array<double, 12> transform{1, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0};
    /// Every n-th cell of the grid holds no return; 0 means none of them.
    std::size_t emptyEvery = 0;
    bool hasColour = true;
};

std::vector<PointRecord> writePtx(const std::filesystem::path& path,
                                  const std::vector<PtxScan>& scans, int sourceIndex = 0);

}  // namespace vpc::test
