#pragma once

#include <string>

#include "platform/GiPointSetDefinition.h"
#include "platform/OdGeMatrix3d.h"
#include "view/PcCoreVisibleNodeManager.h"
#include "vpc/common/CutOptions.h"
#include "vpc/common/LevelOption.h"

namespace vpc {

class LoadedPointSet;

/// The options that decide, beside the camera, which points are there to be seen and picked: how
/// many, of which level, what is cut off, and where the file's coordinates lie in the world.
class ShownOptions {
public:
    explicit ShownOptions(CLI::App& options);

    /// Reads what was given. Throws CommandUsageError where that is no section, clipping region or
    /// matrix.
    void Read() { cuts_.Read(); }
    /// Points to show at most.
    unsigned long long Budget() const { return budget_; }
    /// Takes the file's coordinates to the world's.
    const OdGeMatrix3d& Matrix() const { return cuts_.Matrix(); }
    bool HasCuts() const { return cuts_.Any(); }
    /// Gives a point set the density and the cuts.
    void SetUp(GiPointSetDefinition& points) const;
    /// Gives a point set the level, if one was asked for. Throws CommandUsageError where it has no
    /// such level.
    void SetLevel(LoadedPointSet& points) const;

private:
    unsigned long long budget_ = PcCoreVisibleNodeManager::defaultCapacity;
    std::string densityText_ = "full";
    LevelOption level_;
    CutOptions cuts_;
};

}  // namespace vpc
