#pragma once

#include <vector>

#include <wx/string.h>

#include "core/geometry/VpcBoundingBoxAxisAligned.h"
#include "core/geometry/VpcFrustumDef.h"
#include "core/geometry/VpcInterval.h"
#include "core/geometry/VpcPoint3D.h"
#include "platform/GiPcColorScheme.h"
#include "platform/GiPcStylizationType.h"
#include "platform/OdGeExtents3d.h"
#include "platform/OdGeMatrix3d.h"
#include "platform/OdGePoint3d.h"
#include "platform/OdGeVector3d.h"
#include "view/PointBuffers.h"
#include "view/VisiblePointsNode.h"

class VpcDiskNode;

/// The point buffers that the host draws from, and the nodes whose points are in them. It finds the
/// point that a pick means, and it writes files that show a view.
///
/// It does not own the nodes: empty the buffers before you free their tree.
class PcCoreVisibleNodeManager {
public:
    static constexpr unsigned long long defaultCapacity = 5'000'000;
    static constexpr unsigned long long smallestCapacity = 51;

    /// Throws std::bad_alloc when there is no memory for `slots` slots.
    explicit PcCoreVisibleNodeManager(unsigned long long slots = defaultCapacity);

    unsigned long long nrPointsInBuffer = 0;
    /// The point budget: the slots of every buffer or, after a failed resize, those asked for.
    unsigned long long capacity = 0;
    /// First free slot; equals nrPointsInBuffer.
    unsigned long long nextSlot = 0;

    /// The slots that there are; fewer than `capacity` after a failed resize.
    unsigned long long slots() const { return buffers_.slots(); }
    /// What the ramp of the last colouring stands for: elevations after the move, or luminances.
    /// From 0 to 0 where the colours are the scans'.
    const VpcInterval& rampRange() const { return rampRange_; }

    // The pointers are valid until the buffers are resized.

    OdGePoint3d* coordinates() const { return buffers_.coordinates(); }
    OdCmEntityColor* colours() const { return buffers_.colours(); }
    double* sizes() const { return buffers_.sizes(); }
    /// Luminance of the scan colours; valid after a colouring by intensity.
    double* intensities() const { return buffers_.intensities(); }
    /// In the order in which they were added.
    const std::vector<VisiblePointsNode>& visibleNodes() const { return visibleNodes_; }
    /// The visible nodes that the last pick met, nearest first.
    const std::vector<VisiblePointsNode>& pickNodes() const { return pickNodes_; }

    /// Forgets all nodes and points; the buffers stay.
    void clear();
    /// Reads the node's points into the next free slots, of which there must be enough. A node that
    /// the sections and clippings cut off whole is not recorded.
    /// \return how many points were added
    unsigned long long addNode(VpcDiskNode* node);
    /// The intensities that the file stores of the points in the buffers, in their order; fewer
    /// where it can no longer be read in full. The tree's sections and clippings must be those that
    /// the points were added with.
    std::vector<double> readStoredIntensities() const;
    /// Replaces the buffers by empty ones of another size. A size below smallestCapacity changes
    /// nothing. False when there is no memory: the old buffers remain, but `capacity` is the new
    /// one.
    bool resizePointBuffer(unsigned long long newCapacity);
    /// Moves the points by `matrix`, in place, and colours them by what `type` says. Elevations
    /// are taken after the move; an intensity is the luminance of the colour that the slot had.
    void updateColormapForPointsInBuffer(const OdGeMatrix3d& matrix, GiPcColorScheme scheme,
                                         GiPcStylizationType type);

    /// Collects the visible nodes that `pickFrustum` meets, and makes `camera` the point that the
    /// orders below measure from.
    void updateNodesInPickFrustum(const VpcFrustumDef& pickFrustum, const VpcPoint3D& camera);
    /// Finds the first point in the pick frustum. Nodes are searched from the nearest on, the
    /// points of a node in the order of their slots; the last point of a node is never picked.
    /// \param result the point as it stands in the buffer; assigned only when one is found
    /// \param matrix from the buffer's frame to the frustum's
    bool getPickPoint(const VpcFrustumDef& pickFrustum, OdGePoint3d& result,
                      const OdGeMatrix3d& matrix) const;

    /// Orders nodes by the distance of their boxes' centres from camPointVpc.
    static bool sortVisibleNodesToCameraDistance(const VisiblePointsNode& a,
                                                 const VisiblePointsNode& b);
    /// Orders points by their distance from camPointOda.
    static bool sortPointsInNodeToCameraDistance(const OdGePoint3d& a, const OdGePoint3d& b);

    /// The boxes of the nodes, in the list's order.
    static std::vector<VpcBoundingBoxAxisAligned> getNodeBoundingBoxes(
        const std::vector<VisiblePointsNode>& nodes);

    // Files for inspecting a view. A file that cannot be written is left out. They return whether
    // all were written.

    /// Writes CameraParameters.txt, DataBoundaries.ply, CameraViewFrustum.ply and
    /// InViewFrustum.ply (the boxes of the visible nodes) into `folder`.
    bool exportVisibleNodesAsPly(const wxString& folder, bool flatView, const OdGePoint3d& camera,
                                 const OdGePoint3d& target, const OdGeVector3d& upVector,
                                 const OdGeExtents3d& dataBounds, double worldWidth,
                                 double worldHeight, double pixelSize,
                                 const VpcFrustumDef& viewFrustum) const;
    /// Writes PickPointParameters.txt, PickPointFrustum.ply and InPickFrustum.ply (the boxes of
    /// the pick nodes) into `folder`.
    bool exportPickNodesAsPly(const wxString& folder, const OdGePoint3d& camera,
                              const OdGePoint3d& target, const OdGeVector3d& upVector,
                              const OdGePoint3d& pickPoint, const OdGeExtents3d& dataBounds,
                              double worldWidth, double worldHeight,
                              const VpcFrustumDef& pickFrustum) const;

private:
    bool FindInNode(const VisiblePointsNode& visible, const VpcFrustumDef& pickFrustum,
                    const OdGeMatrix3d& matrix, OdGePoint3d& result) const;

    std::vector<VisiblePointsNode> visibleNodes_;
    vpc::PointBuffers buffers_;
    VpcInterval rampRange_{0.0, 0.0};
    std::vector<VisiblePointsNode> pickNodes_;
};
