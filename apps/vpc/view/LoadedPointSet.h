#pragma once

#include <optional>
#include <string>
#include <vector>

#include "host/PcCorePointSet.h"
#include "host/PcDbPointCloudDefImplPE.h"
#include "platform/OdGeMatrix3d.h"
#include "vpc/view/Camera.h"
#include "vpc/view/ViewReport.h"

namespace vpc {

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
    /// The corners of the box around all points, as `matrix` places them in the world. This and
    /// Update throw CommandError where the file cannot be read any more.
    CameraOptions::Corners Corners(const OdGeMatrix3d& matrix) const;
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
    /// The point of the last view that a pick finds in a box of `pixels` pixels around `at`.
    std::optional<OdGePoint3d> Pick(const ViewCamera& camera, const OdGeMatrix3d& matrix,
                                    const OdGePoint3d& at, int pixels) const;
    /// Writes the last view's values and shapes into a folder, which is made where it is missing.
    /// Throws CommandError where that cannot be done.
    void WriteDiagnostics(const std::string& folder) const;

private:
    /// The point set with what it offers beyond the host's interface.
    PcCorePointSet& Core() const { return static_cast<PcCorePointSet&>(*set_); }
    OdString AbsoluteName() const;
    [[noreturn]] void FailLoading() const;
    [[noreturn]] void FailReading() const;

    std::string file_;
    PcDbPointCloudDefImplPE extension_;
    GiPointSetDefinition* set_ = nullptr;
};

}  // namespace vpc
