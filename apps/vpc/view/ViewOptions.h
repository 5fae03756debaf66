#pragma once

#include <optional>
#include <string>
#include <vector>

#include "core/geometry/VpcVector3D.h"
#include "platform/GiPcClipConfig.h"
#include "platform/GiPointSetDefinition.h"
#include "platform/OdGeMatrix3d.h"
#include "platform/OdGePoint3d.h"
#include "platform/OdGeVector3d.h"
#include "view/PcCoreVisibleNodeManager.h"

namespace CLI {
class App;
}

namespace vpc {

/// A plane that cuts the cloud: what lies on the side of its normal stays. In world coordinates.
struct SectionPlane {
    OdGePoint3d point;
    OdGeVector3d normal;

    /// \param text "PX,PY,PZ,NX,NY,NZ". Throws CommandUsageError for anything else.
    static SectionPlane Parse(const std::string& text);
};

/// A circle or polygon in the world's XY plane; points above, below and within it are kept, or
/// those outside.
class ClipRegion {
public:
    /// \param text "CX,CY,R", or "outside:CX,CY,R". Throws CommandUsageError for anything else.
    static ClipRegion ParseCircle(const std::string& text);
    /// \param text "X,Y;X,Y;...", or the same after "outside:". Throws CommandUsageError for
    /// anything else, and for fewer than three corners.
    static ClipRegion ParsePolygon(const std::string& text);

    /// The region as the host describes it to a point set that it shows through `matrix`.
    GiPcClipConfig ToConfig(const OdGeMatrix3d& matrix) const;

private:
    bool keepInside_ = true;
    bool circle_ = false;
    /// The corners, or the centre and a point of the circle.
    std::vector<VpcVector3D> vertices_;
};

/// The options that decide, beside the camera, what a view shows: how many points and in which
/// colours, what is cut off, and where the file's coordinates lie in the world.
class ViewOptions {
public:
    explicit ViewOptions(CLI::App& options);

    /// Reads what was given. Throws CommandUsageError where that is no section, clipping region or
    /// matrix.
    void Read();
    /// Points to show at most.
    unsigned long long Budget() const { return budget_; }
    /// Takes the file's coordinates to the world's.
    const OdGeMatrix3d& Matrix() const { return matrix_; }
    /// What the colours show; nothing in particular unless it is given.
    GiPcStylizationType Stylization() const;
    /// The colour ramp, where one is given.
    std::optional<GiPcColorScheme> Scheme() const;
    bool HasCuts() const { return !sections_.empty() || !clips_.empty(); }
    /// Gives a point set the density, the colours and the cuts.
    void SetUp(GiPointSetDefinition& points) const;

private:
    void DeclareStyle(CLI::App& options);
    void DeclareCuts(CLI::App& options);

    unsigned long long budget_ = PcCoreVisibleNodeManager::defaultCapacity;
    std::string densityText_ = "full";
    std::string stylizationText_ = "auto";
    std::string schemeText_;
    std::vector<std::string> sectionTexts_;
    std::vector<std::string> circleTexts_;
    std::vector<std::string> polygonTexts_;
    std::vector<std::string> matrixTexts_;
    std::vector<SectionPlane> sections_;
    std::vector<ClipRegion> clips_;
    OdGeMatrix3d matrix_;
};

}  // namespace vpc
