#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "core/geometry/VpcPoint3D.h"
#include "platform/OdGeMatrix3d.h"
#include "tree/disk/VpcTree.h"
#include "tree/file/PointTreeReader.h"
#include "vpc/common/CutOptions.h"
#include "vpc/common/Progress.h"

namespace vpc {

/// What an export has to know of its points before it writes the first one.
struct ExportSummary {
    unsigned long long points = 0;
    std::array<double, 3> low{};
    std::array<double, 3> high{};
    /// The largest value of any colour channel.
    std::uint16_t largestColour = 0;
    /// Whether every intensity is the same as a float.
    bool floatIntensities = true;
    /// Points at 0, 0, 0.
    unsigned long long atOrigin = 0;

    void Add(std::span<const VpcPoint3D> batch);
};

/// The points to export: those of one level that the cuts let pass, in the order of the file. They
/// are read anew for every pass over them, so they take no memory.
class ExportSource {
public:
    using Visit = std::function<void(std::span<const VpcPoint3D> batch)>;

    /// Reads the points for the first time. This and ForEach throw CommandError where the file
    /// cannot be read in full, and CommandInterrupted.
    /// \param tree must outlive this object
    ExportSource(PointTreeReader& tree, unsigned long long level, const CutOptions& cuts);

    const ExportSummary& Summary() const { return summary_; }
    /// Points of the level, before the cuts.
    unsigned long long PointsOfLevel() const { return pointsOfLevel_; }
    /// From now on points have the colours of their elevations in the world, from blue to red.
    void ColourByElevation();
    /// Shows all points to `visit`, some thousands at a time.
    /// \param step what is done with them, for the user: "writing points"
    void ForEach(const std::string& step, const Visit& visit);

private:
    struct Range {
        double low;
        double high;
    };

    void Take(std::span<const char> records, const Visit& visit);
    double Elevation(const VpcPoint3D& p) const;

    PointTreeReader& tree_;
    unsigned long long level_;
    OdGeMatrix3d matrix_;
    VpcTree cuts_;
    Progress progress_;
    std::vector<VpcPoint3D> batch_;
    unsigned long long pointsOfLevel_ = 0;
    std::optional<Range> elevations_;
    ExportSummary summary_;
};

}  // namespace vpc
