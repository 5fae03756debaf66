#include "tree/disk/VpcTree.h"

#include <algorithm>

VpcTree::~VpcTree() = default;

void VpcTree::SetSectionPlanes(const SectionPlanes& sections, const VpcTransform3D& toTree) {
    sectionTransform_ = toTree;
    sections_.clear();
    for (const auto& [name, plane] : sections) {
        VpcPoint3D point = plane.ClosestPointToOrigin();
        VpcVector3D normal = plane.normal;
        toTree.ApplyForwardTransform(point);
        toTree.ApplyForwardRotation(normal);
        sections_.emplace_back(name, VpcPlaneDef(point, normal));
    }
}

bool VpcTree::verifyPointWrtSections(double x, double y, double z) const {
    return std::none_of(sections_.begin(), sections_.end(), [=](const auto& section) {
        return section.second.SignedDistance(x, y, z) < 0.0;
    });
}

void VpcTree::SetLocalClippings(const std::vector<GiPcClipConfig>& configs) {
    clippings_.clear();
    for (const GiPcClipConfig& config : configs) clippings_.emplace_back(config);
}

bool VpcTree::verifyPointWrtClippings(double x, double y, double z) const {
    return std::all_of(clippings_.begin(), clippings_.end(),
                       [=](const VpcClipping& clipping) { return clipping.isInside(x, y, z); });
}
