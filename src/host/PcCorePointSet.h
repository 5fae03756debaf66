#pragma once

#include <memory>
#include <utility>
#include <vector>

#include <wx/string.h>

#include "host/VpcExport.h"
#include "host/VpcViewFacts.h"
#include "platform/GiPointSetDefinition.h"
#include "platform/OdString.h"
#include "platform/TreePreparePars.h"
#include "tree/construct/PrepareObserver.h"
#include "tree/construct/TreePrepareResult.h"

class PcCoreProjectManager;

/// A point set as the host sees it: a thin facade over the project manager of one loaded file.
///
/// Every operation may be called before a load succeeds: results are then 0, false or null, and
/// settings are not kept. A load sets them back, sections and clippings as well. Only one thread at
/// a time may use point sets, all of them together. Any operation may throw std::bad_alloc.
class VPC_EXPORT PcCorePointSet final : public GiPointSetDefinition {
public:
    PcCorePointSet();
    ~PcCorePointSet() override;
    PcCorePointSet(const PcCorePointSet&) = delete;
    PcCorePointSet& operator=(const PcCorePointSet&) = delete;

    OdUInt32 getPointModelUnit() const override;

    bool hasViewGeometryChanged(const OdGeMatrix3d& matrix, const OdGePoint3d& camera,
                                const OdGePoint3d& target, const OdGeVector3d& viewVector,
                                double fieldWidth, double fieldHeight, int viewportWidth,
                                int viewportHeight, bool perspective) override;
    /// Shows at most as many points as the host's POINTCLOUDPOINTMAX says. Nodes are left out that
    /// are further away than three times the camera's distance from the centre of dataMin and
    /// dataMax. `viewVector` points up, square to the view.
    unsigned long long updateVisiblePoints(const OdGeMatrix3d& matrix, const OdGePoint3d& camera,
                                           const OdGePoint3d& target,
                                           const OdGeVector3d& viewVector, double fieldWidth,
                                           double fieldHeight, int viewportWidth,
                                           int viewportHeight, bool perspective) override;
    /// `second` and `secondMatrix` are not used. Sorts by a camera that is global to the process,
    /// so that no two picks may run at once, in whatever point sets.
    void getOsnapPoints(const OdGePoint3d& pickPoint, const OdGePoint3d& second,
                        const OdGeMatrix3d& matrix, const OdGeMatrix3d& secondMatrix,
                        OdArray<OdGePoint3d>& snapPoints) override;

    unsigned long long getNrVisiblePoints() const override;
    const OdGePoint3d* getPointCoordinates() const override;
    const OdCmEntityColor* getPointColors() const override;
    const double* getPointSizes() const override;
    unsigned long long getTotalNrPoints() const override;

    GiPcDrawDensity drawDensity() const override;
    void setDrawDensity(GiPcDrawDensity density) override;
    bool useFlatView() const override;
    /// Without effect: every update sets it to true before it would count.
    void setUseFlatView(bool flat) override;
    unsigned long long maxNrPointsInBuffer() const override;
    /// Holds until the next update, which asks for POINTCLOUDPOINTMAX.
    void setMaxNrPointsInBuffer(unsigned long long count) override;
    GiPcStylizationType stylizationType() const override;
    void setStylizationType(GiPcStylizationType type) override;
    GiPcColorScheme colorScheme() const override;
    void setColorScheme(GiPcColorScheme scheme) override;

    bool hasSameSections(
        const std::vector<std::pair<OdGePoint3d, OdGeVector3d>>& sections) override;
    /// The flag is not used, here and in clearSections.
    bool addSection(const OdString& name, const OdGePoint3d& point, const OdGeVector3d& normal,
                    bool flag) override;
    bool clearSections(bool flag) override;

    // These return true even when nothing is loaded or there is nothing to remove.

    bool addClipping(const GiPcClipConfig& config) override;
    bool removeLastClipping() override;
    bool clearClippings() override;

    /// Loads a point tree file. Afterwards the set shows this file or, if it cannot be loaded,
    /// none.
    ///
    /// Returns false when there is no file of that name with the extension "vpt", in which case
    /// what was loaded before stays, and when the file is damaged. Throws OdError when the file is
    /// of another version. In each of these cases the log gets a line that says why.
    bool loadProjectFromFile(const OdString& fileName);
    /// The same for a host that wants to know more: in place of an OdError this returns false, too,
    /// and `problem` is a sentence that says why and names the file; empty after a success.
    bool loadProjectFromFile(const OdString& fileName, wxString& problem);
    /// Reads the box around a file's points, a little enlarged; no file need be loaded. Returns
    /// false when the file cannot be read. Both corners are then 0, 0, 0 if it is of another
    /// version.
    static bool readDataMinMax(const OdString& fileName, OdGePoint3d& min, OdGePoint3d& max);
    /// The version of a file; 0 where the file cannot be read.
    static unsigned long long fileVptVersion(const OdString& fileName);
    /// The only version that the library writes and loads.
    static unsigned long long currentVptVersion();
    /// Turns scans into a point tree file.
    static TreePrepareResult preparePointData(const TreePreparePars& pars);
    /// The same, watched by `observer`, which can stop the run.
    static TreePrepareResult preparePointData(const TreePreparePars& pars,
                                              PrepareObserver& observer);

    /// What vpcGetViewFacts gives. False, with `facts` as they were, when nothing is loaded.
    bool getViewFacts(vpc::ViewFacts& facts) const;
    /// The numbers of nodes and points of every level, the coarsest first.
    std::vector<std::pair<unsigned long long, unsigned long long>> GetNodePointSummary() const;
    /// The intensities that the scans gave the points in the arrays, in their order. They are read
    /// from the file, which takes about as long as the update did. Fewer than there are points
    /// where the file can no longer be read in full.
    std::vector<double> readPointIntensities() const;
    /// Returns false when memory is short or nothing is loaded. Counts below 51 change nothing.
    bool resizePointBuffer(unsigned long count);
    /// Has no effect: every update resets it before it would write diagnostic files.
    /// PcCoreProjectManager::exportView writes them.
    void setDrawGeometry(bool draw);
    bool toggleEnableDisableSections();

    /// The name that was last given to loadProjectFromFile, whether it was loaded or not.
    const OdString& fileName() const { return fileName_; }
    /// The box around the points as of the last load or update; its minimum is above its maximum
    /// where there is none.
    const OdGePoint3d& dataMin() const { return dataMin_; }
    const OdGePoint3d& dataMax() const { return dataMax_; }
    /// Null until a load succeeds. The point set owns it.
    PcCoreProjectManager* projectManager() const { return manager_.get(); }

private:
    /// Throws vpc::IoError.
    void LoadProject(const wxString& fileName);
    void CopyDataBounds(const PcCoreProjectManager& manager);
    void AdoptPointMax();

    OdGePoint3d dataMin_;
    OdGePoint3d dataMax_;
    OdString fileName_;
    std::unique_ptr<PcCoreProjectManager> manager_;
    /// What POINTCLOUDPOINTMAX asked for at the last update; 0 before one.
    unsigned long long pointMax_ = 0;
};
