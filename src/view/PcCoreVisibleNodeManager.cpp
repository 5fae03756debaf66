#include "view/PcCoreVisibleNodeManager.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <new>

#include "core/util/VpcDefinitions.h"
#include "tree/disk/VpcDiskNode.h"
#include "view/CameraPoints.h"
#include "view/PointColouring.h"

namespace {

/// Whether `a` comes before `b`. A NaN, as damaged files can give, comes last.
bool isNearer(double a, double b) {
    return a < b || (std::isnan(b) && !std::isnan(a));
}

}  // namespace

PcCoreVisibleNodeManager::PcCoreVisibleNodeManager(unsigned long long slots)
    : capacity(slots), buffers_(slots) {
}

void PcCoreVisibleNodeManager::clear() {
    visibleNodes_.clear();
    pickNodes_.clear();
    nrPointsInBuffer = 0;
    nextSlot = 0;
}

unsigned long long PcCoreVisibleNodeManager::addNode(VpcDiskNode* node) {
    // Callers make sure that the node fits into `capacity`. After a failed resize, though, the
    // buffers have fewer slots than that.
    const unsigned long long added = node->AddPointsFromDisk(nextSlot, coordinates(), colours(),
                                                             sizes(), capacity, buffers_.slots());
    if (added == 0) return 0;
    visibleNodes_.push_back({nrPointsInBuffer, nrPointsInBuffer + added - 1, node});
    nextSlot += added;
    nrPointsInBuffer += added;
    return added;
}

std::vector<double> PcCoreVisibleNodeManager::readStoredIntensities() const {
    std::vector<double> intensities;
    intensities.reserve(static_cast<std::size_t>(nrPointsInBuffer));
    for (const VisiblePointsNode& visible : visibleNodes_) {
        const unsigned long long points = visible.lastSlot - visible.firstSlot + 1;
        if (visible.node->AppendIntensities(intensities, points) != points) break;
    }
    return intensities;
}

bool PcCoreVisibleNodeManager::resizePointBuffer(unsigned long long newCapacity) {
    if (newCapacity < smallestCapacity || newCapacity == capacity) return true;
    // Even when there is no memory: hosts expect `capacity` to be what they asked for last.
    clear();
    capacity = newCapacity;
    try {
        buffers_ = vpc::PointBuffers(newCapacity);
    } catch (const std::bad_alloc&) {
        return false;
    }
    return true;
}

void PcCoreVisibleNodeManager::updateColormapForPointsInBuffer(const OdGeMatrix3d& matrix,
                                                               GiPcColorScheme scheme,
                                                               GiPcStylizationType type) {
    const auto ramp = static_cast<VpcColorScheme>(scheme);
    switch (static_cast<VpcStylizationType>(type)) {
        case VPC_Stylization_INTENSITY:
            rampRange_ = vpc::colourByIntensity(buffers_, nrPointsInBuffer, matrix, ramp);
            return;
        case VPC_Stylization_ELEVATION:
            rampRange_ = vpc::colourByElevation(buffers_, nrPointsInBuffer, matrix, ramp);
            return;
        default:
            rampRange_ = vpc::movePoints(buffers_, nrPointsInBuffer, matrix);
    }
}

// --- Picking -------------------------------------------------------------------------------------

void PcCoreVisibleNodeManager::updateNodesInPickFrustum(const VpcFrustumDef& pickFrustum,
                                                        const VpcPoint3D& camera) {
    camPointVpc = camera;
    camPointOda = OdGePoint3d(camera.x, camera.y, camera.z);
    pickNodes_.clear();
    std::copy_if(visibleNodes_.begin(), visibleNodes_.end(), std::back_inserter(pickNodes_),
                 [&pickFrustum](const VisiblePointsNode& visible) {
                     return pickFrustum.Intersects(visible.node->box);
                 });
    std::sort(pickNodes_.begin(), pickNodes_.end(), sortVisibleNodesToCameraDistance);
}

bool PcCoreVisibleNodeManager::getPickPoint(const VpcFrustumDef& pickFrustum, OdGePoint3d& result,
                                            const OdGeMatrix3d& matrix) const {
    for (const VisiblePointsNode& visible : pickNodes_) {
        if (visible.lastSlot >= nextSlot) continue;
        if (FindInNode(visible, pickFrustum, matrix, result)) return true;
    }
    return false;
}

bool PcCoreVisibleNodeManager::FindInNode(const VisiblePointsNode& visible,
                                          const VpcFrustumDef& pickFrustum,
                                          const OdGeMatrix3d& matrix, OdGePoint3d& result) const {
    // Deliberately without the node's last point.
    const OdGePoint3d* const first = coordinates() + visible.firstSlot;
    const OdGePoint3d* const last = coordinates() + visible.lastSlot;

    // Deliberately, the search does not use this order: hosts expect the point in the lowest slot,
    // which need not be the nearest.
    std::vector<OdGePoint3d> nearestFirst(first, last);
    std::sort(nearestFirst.begin(), nearestFirst.end(), sortPointsInNodeToCameraDistance);

    const OdGePoint3d* const found = std::find_if(first, last, [&](OdGePoint3d point) {
        point.transformBy(matrix);
        return pickFrustum.IsInside(point.x, point.y, point.z);
    });
    if (found == last) return false;
    result = *found;
    return true;
}

bool PcCoreVisibleNodeManager::sortVisibleNodesToCameraDistance(const VisiblePointsNode& a,
                                                                const VisiblePointsNode& b) {
    return isNearer(a.node->box.Centre().DistanceTo(camPointVpc),
                    b.node->box.Centre().DistanceTo(camPointVpc));
}

bool PcCoreVisibleNodeManager::sortPointsInNodeToCameraDistance(const OdGePoint3d& a,
                                                                const OdGePoint3d& b) {
    return isNearer((a - camPointOda).length(), (b - camPointOda).length());
}
