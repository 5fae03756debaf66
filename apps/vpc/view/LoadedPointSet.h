#pragma once

#include <optional>
#include <string>
#include <vector>

#include "core/geometry/VpcPoint3D.h"
#include "host/PcCorePointSet.h"
#include "host/PcDbPointCloudDefImplPE.h"
#include "platform/OdGeMatrix3d.h"
#include "vpc/common/PlacedBox.h"
#include "vpc/view/Camera.h"
#include "vpc/view/ViewReport.h"

class VpcDiskNode;

namespace vpc {

/// A point that a pick has found.
struct PickedPoint {
    /// Where it is shown, in world coordinates.
    OdGePoint3d at;
    /// As the file holds it.
    VpcPoint3D stored;
};

/// A tree file loaded, viewed and freed as a host does it.
class LoadedPointSet {
public:
    /// Throws CommandError for a file that cannot be loaded.
    explicit LoadedPointSet(const std::string& file);
    ~LoadedPointSet();
    LoadedPointSet(const LoadedPointSet&) = delete;
    LoadedPointSet& operator=(const LoadedPointSet&) = delete;

    GiPointSetDefinition* operator->() const { return set_; }
    GiPointSetDefinition& operator*() const { return *set_; }

    /// Sets the host's variable for the most points to show. Throws CommandError where there is not
    /// enough memory for them.
    void SetBudget(unsigned long long points);
    unsigned long long Levels() const;
    /// Views show no level deeper than this one from now on.
    void SetLevel(unsigned long long level);
    /// The box around all points, as `matrix` places it in the world. This and Update throw
    /// CommandError where the file cannot be read any more.
    PlacedBox Box(const OdGeMatrix3d& matrix) const;
    /// Its corners.
    CameraOptions::Corners Corners(const OdGeMatrix3d& matrix) const { return Box(matrix).corners; }
    /// Shows the view that a camera has of the points, which `matrix` places in the world.
    void Update(const ViewCamera& camera, const OdGeMatrix3d& matrix);
    /// The corners of a box around the points of the last view, in the world; nothing where there
    /// are none.
    std::optional<CameraOptions::Corners> VisibleCorners() const;
    /// The intensities that the scan gave the points of the last view. Throws CommandError where
    /// the file cannot be read any more.
    std::vector<double> Intensities() const;
    /// The luminance of their colours in the scan; only after a view that is coloured by intensity.
    const double* Luminances() const;
    /// Describes the last view.
    ViewReport Report(double updateSeconds) const;
    /// A sentence that says why a picture of the last view, which `camera` had, shows no points at
    /// all; nothing where it shows some.
    std::optional<std::string> WhyEmpty(const ViewCamera& camera, const Viewport& picture,
                                        const OdGeMatrix3d& matrix) const;
    /// A sentence that says why the last view shows a coarser level than SetLevel asked for;
    /// nothing where it does not.
    std::optional<std::string> WhyCoarser() const;
    /// The point of the last view that a pick finds in a box of `pixels` pixels around `at`.
    std::optional<PickedPoint> Pick(const ViewCamera& camera, const OdGeMatrix3d& matrix,
                                    const OdGePoint3d& at, int pixels) const;
    /// Writes the last view's values and shapes into a folder, which is made where it is missing.
    /// Throws CommandError where that cannot be done.
    void WriteDiagnostics(const std::string& folder) const;

private:
    /// The point set with what it offers beyond the host's interface.
    PcCorePointSet& Core() const { return static_cast<PcCorePointSet&>(*set_); }
    OdString AbsoluteName() const;
    const PcCoreProjectManager& Manager() const;
    /// Points of the level that the last view shows, of those nodes that it meets.
    unsigned long long PointsInSight() const;
    std::optional<OdGePoint3d> FindShown(const ViewCamera& camera, const OdGeMatrix3d& matrix,
                                         const OdGePoint3d& at, int pixels) const;
    /// What the file holds of the point that the last pick found.
    VpcPoint3D Stored(const OdGePoint3d& shown) const;
    /// The point of the node's that `before` others are shown before.
    VpcPoint3D ReadPoint(const VpcDiskNode& node, unsigned long long before) const;
    [[noreturn]] void FailLoading() const;
    [[noreturn]] void FailReading() const;

    std::string file_;
    PcDbPointCloudDefImplPE extension_;
    GiPointSetDefinition* set_ = nullptr;
};

}  // namespace vpc
