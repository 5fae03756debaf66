#pragma once

#include <string>
#include <vector>

#include "support/PointRecord.h"

namespace vpc::test {

struct ReferenceSettings {
    unsigned long long hostValue = 0;
    bool isKdTree = false;
    unsigned long long maxPointsPerNode = 100;
    unsigned long long maxLevel = 10;
    bool thinsByGrid = false;
};

/// What the readers report about the scans beside their points.
struct ReferenceStatistics {
    bool is16bitColour = false;
    std::uint16_t maxRed = 0;
    std::uint16_t maxGreen = 0;
    std::uint16_t maxBlue = 0;
    double maxIntensity = 0;
};

/// Takes the colour depth from the first points of the first scan and the maxima from every scan.
/// Points that are not finite do not count.
ReferenceStatistics statisticsOf(const std::vector<std::vector<PointRecord>>& scans,
                                 std::size_t firstBatch);

/// The bytes of the point tree file over `scans`, from a model that holds everything in memory and
/// does one thing after the other, slowly but plainly. Empty when there is no point. `pointsLost`
/// counts the points that no child took.
std::string referenceTreeFile(const std::vector<std::vector<PointRecord>>& scans,
                              const ReferenceStatistics& statistics,
                              const ReferenceSettings& settings,
                              unsigned long long* pointsLost = nullptr);

}  // namespace vpc::test
