#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <utility>
#include <vector>

#include <wx/string.h>

#include "core/geometry/VpcFrustumDef.h"
#include "core/geometry/VpcPlaneDef.h"
#include "platform/GiPcClipConfig.h"
#include "platform/GiPcColorScheme.h"
#include "platform/GiPcDrawDensity.h"
#include "platform/GiPcStylizationType.h"
#include "platform/OdArray.h"
#include "platform/OdGeExtents3d.h"
#include "platform/OdGeMatrix3d.h"
#include "platform/OdGePoint3d.h"
#include "platform/OdGeVector3d.h"
#include "platform/OdString.h"
#include "view/CameraView.h"
#include "view/PcCoreVisibleNodeManager.h"

class VpcDiskNode;
class VpcDiskTree;

namespace vpc {
class PointTreeReader;
}

/// One loaded point tree and everything that depends on the view: chooses for a camera the nodes
/// to show within the point budget, and has their points read into the buffers.
///
/// The budget is the buffers' capacity. Before a tree is loaded, and with a tree without nodes,
/// every view is empty. One thread at a time.
class PcCoreProjectManager {
public:
    using Section = std::pair<OdString, VpcPlaneDef>;
    using NodeList = std::vector<VpcDiskNode*>;

    /// The bounds of no data: the minimum is above the maximum.
    static constexpr double noMinimum = 1e80;
    static constexpr double noMaximum = -1e80;
    /// The box in which an object snap looks for points.
    static constexpr int snapBoxPixels = 5;

    /// Allocates the buffers; throws std::bad_alloc.
    PcCoreProjectManager();
    ~PcCoreProjectManager();
    PcCoreProjectManager(const PcCoreProjectManager&) = delete;
    PcCoreProjectManager& operator=(const PcCoreProjectManager&) = delete;

    // --- Settings; each update reads them anew -------------------------------------------------

    GiPcColorScheme colorScheme = GiPc_ColorScheme_ScanColors;
    GiPcStylizationType stylizationType = GiPc_Stylization_NONE;
    /// Low density lowers the budget of the flat selection to a fifth.
    GiPcDrawDensity drawDensity = GiPc_DrawDensity_Full;
    /// Meant to let updates write the files of exportView, which they never do: every update and
    /// pick first sets it to false. Call exportView for the files.
    bool drawGeometry = false;
    /// Whether updates show one level throughout. They always do: every update sets it to true.
    bool useFlatView = false;
    /// Whether updates cut at the sections.
    bool sectionsEnabled = false;
    /// The flat selection chooses no level deeper than this one. Hosts leave it as it is, so that
    /// the budget alone decides.
    unsigned long long deepestLevel = ~0ULL;

    // --- Results -------------------------------------------------------------------------------

    /// Distance of the camera of the last view or pick from the centre of the root's box; 0 without
    /// a root.
    double cameraDistance = 0.0;
    /// Size of a pixel of the last view in world units.
    double pixelSize = 0.0001;
    /// The level that the last flat selection chose; 1 after loading.
    unsigned long long selectedLevel = 1;
    /// Points of the loaded tree's deepest level: all of the scans' points.
    unsigned long long totalNrPoints = 0;

    /// Points of nodes that the last view chose and that could not be read; WhyPointsAreMissing of
    /// the tree tells why.
    unsigned long long missingPoints = 0;

    /// The value that the host gave to preprocessing.
    std::uint32_t pointModelUnit() const { return pointModelUnit_; }
    /// Null before a load succeeds.
    VpcDiskTree* tree() const { return tree_.get(); }
    /// The folder of the loaded file, with a separator at its end.
    const wxString& workingFolder() const { return workingFolder_; }
    /// The root's box, a little enlarged; noMinimum and noMaximum where there is none.
    const OdGePoint3d& dataMin() const { return dataMin_; }
    const OdGePoint3d& dataMax() const { return dataMax_; }
    const vpc::CameraView& lastView() const { return lastView_; }
    /// The view that the last pick was made in.
    const vpc::CameraView& lastPickView() const { return lastPickView_; }
    const VpcFrustumDef& viewFrustum() const { return viewFrustum_; }
    const VpcFrustumDef& pickFrustum() const { return pickFrustum_; }
    const std::vector<Section>& sections() const { return sections_; }
    PcCoreVisibleNodeManager& visibleNodeManager() { return visibleNodeManager_; }
    const PcCoreVisibleNodeManager& visibleNodeManager() const { return visibleNodeManager_; }

    // --- Loading -------------------------------------------------------------------------------

    /// Loads the hierarchy of a point tree file of version 9. False, with a line in the log and
    /// nothing changed, when it is missing, of another version or damaged.
    bool loadProjectFromFile(const wxString& fileName);
    /// The same for a caller that has the file open already; throws IoError in place of giving
    /// false.
    /// \param treeFile the file of that name with the extension "vpt": version and unit come from
    ///                 it, and the hierarchy too where it has just that name
    void loadProject(const wxString& fileName, std::unique_ptr<vpc::PointTreeReader> treeFile);
    /// The root's box of a file, without loading the file. False, and nothing assigned, where
    /// there is none.
    static bool readDataMinMax(const OdString& fileName, OdGePoint3d& min, OdGePoint3d& max);

    // --- Views ---------------------------------------------------------------------------------

    // The host's nine arguments. `matrix` leads from the tree's frame to the world, in which the
    // other arguments are; `viewVector` is the camera's up vector.

    /// Whether the view differs noticeably from that of the last update. A value that was exactly
    /// 0 there counts as changed; matrix and viewport do not count.
    bool hasViewGeometryChanged(const OdGeMatrix3d& matrix, const OdGePoint3d& camera,
                                const OdGePoint3d& target, const OdGeVector3d& viewVector,
                                double fieldWidth, double fieldHeight, int viewportWidth,
                                int viewportHeight, bool perspective) const;
    /// Fills the buffers for a view and colours them. A view without extent or direction selects
    /// nothing.
    /// \return how many points are in the buffers now
    unsigned long long updateVisiblePoints(const OdGeMatrix3d& matrix, const OdGePoint3d& camera,
                                           const OdGePoint3d& target,
                                           const OdGeVector3d& viewVector, double fieldWidth,
                                           double fieldHeight, int viewportWidth,
                                           int viewportHeight, bool perspective);

    // Selections. Each adds the points of the nodes that it selects to the buffers.

    /// Selects the deepest level that has fewer points in the frustum than the budget, and of it
    /// the nodes in the frustum.
    NodeList flatNodeSelection(const VpcFrustumDef& frustum);
    /// Starts with the root and replaces nodes by their visible children, the sparsest first, as
    /// long as the budget allows.
    NodeList dynamicNodeSelection(const VpcFrustumDef& frustum);

    /// Points of the level's nodes whose boxes meet the frustum; 0 for a level that does not exist.
    unsigned long long getNrPointsInFrustumLOD(const VpcFrustumDef& frustum,
                                               unsigned long long level) const;
    /// Sets `out` to the children that the frustum meets and that hold points or children.
    /// \return the points of `parent` and those of all its children
    std::pair<unsigned long long, unsigned long long> checkReplaceParentByVisibleChildren(
        const VpcFrustumDef& frustum, const VpcDiskNode* parent, NodeList& out) const;
    unsigned long long getNrPointsInSelectedNodes(const NodeList& nodes) const;

    /// Writes the files of PcCoreVisibleNodeManager's view export for the last view.
    /// \return whether all were written
    bool exportView(const wxString& folder) const;
    /// The same for the pick export and the last pick.
    bool exportPick(const wxString& folder) const;

    // --- Sections and clippings; the next update applies them ----------------------------------

    /// Adds a section that keeps what lies on the normal's side, and enables all sections. Always
    /// true; the flag is not used.
    bool addSection(const OdString& name, const OdGePoint3d& point, const OdGeVector3d& normal,
                    bool flag);
    /// Whether the sections are these, in this order. The point of each pair holds the plane's
    /// normal and the vector holds its point: that is how hosts call it.
    bool hasSameSections(const std::vector<std::pair<OdGePoint3d, OdGeVector3d>>& planes) const;
    /// Always true.
    bool toggleEnableDisableSections();
    /// Always true; the flag is not used.
    bool deleteSections(bool flag);

    const std::vector<GiPcClipConfig>& clippings() const { return clippings_; }
    void addClipping(const GiPcClipConfig& clipping);
    /// Does nothing where there is none.
    void removeLastClipping();
    void clearClippings();

    // --- Picking -------------------------------------------------------------------------------

    /// Finds a point of the buffers within a box of `pickBoxPixels` around `pickPoint`, as the
    /// given view shows it. `result` is assigned only when there is one; the colours never are.
    bool pickPointFast(const OdGeMatrix3d& matrix, const OdGePoint3d& camera,
                       const OdGePoint3d& target, const OdGeVector3d& viewVector, double fieldWidth,
                       double fieldHeight, int viewportWidth, int viewportHeight, bool perspective,
                       OdGePoint3d pickPoint, int pickBoxPixels, OdGePoint3d& result,
                       unsigned short& red, unsigned short& green, unsigned short& blue);
    /// Appends the point that a pick of snapBoxPixels in the last view finds, if any. The second
    /// point and matrix are not used.
    void getOsnapPoints(const OdGePoint3d& pickPoint, const OdGePoint3d& second,
                        const OdGeMatrix3d& matrix, const OdGeMatrix3d& secondMatrix,
                        OdArray<OdGePoint3d>& snapPoints);

private:
    void SetDataBounds();
    OdGeExtents3d DataBounds() const;
    double DistanceToRootCentre(const OdGePoint3d& camera) const;
    /// Null where there is none.
    VpcDiskNode* Root() const;
    unsigned long long NrLevels() const;
    /// Empty where there is none.
    std::span<VpcDiskNode* const> Level(unsigned long long level) const;
    /// Empties the buffers and fills them for the last view. `toTree` leads from the world into the
    /// tree's frame.
    void FillBuffers(const VpcTransform3D& toTree);
    /// Replaces the first node of the list whose children the budget allows by these children.
    /// False when there is none.
    /// \param total the points of all nodes in the list
    bool RefineSparsestNode(const VpcFrustumDef& frustum, unsigned long long total,
                            NodeList& selected) const;
    bool Pick(const OdGeMatrix3d& matrix, const vpc::CameraView& view, const OdGePoint3d& pickPoint,
              int pickBoxPixels, OdGePoint3d& result);

    std::uint32_t pointModelUnit_ = 0;
    std::unique_ptr<VpcDiskTree> tree_;
    wxString workingFolder_;
    vpc::CameraView lastView_;
    VpcFrustumDef viewFrustum_;
    VpcFrustumDef pickFrustum_;
    vpc::CameraView lastPickView_;
    OdGePoint3d lastPickPoint_;
    PcCoreVisibleNodeManager visibleNodeManager_;
    OdGePoint3d dataMin_{noMinimum, noMinimum, noMinimum};
    OdGePoint3d dataMax_{noMaximum, noMaximum, noMaximum};
    std::vector<Section> sections_;
    std::vector<GiPcClipConfig> clippings_;
};
