#pragma once

#include <utility>
#include <vector>

#include "core/geometry/VpcPlaneDef.h"
#include "core/geometry/VpcTransform3D.h"
#include "platform/GiPcClipConfig.h"
#include "platform/OdString.h"
#include "tree/disk/VpcClipping.h"

/// The filters of a point tree: a point is shown when it lies on no section plane's far side and
/// passes every clipping region.
class VpcTree {
public:
    using SectionPlanes = std::vector<std::pair<OdString, VpcPlaneDef>>;

    VpcTree() = default;
    VpcTree(const VpcTree&) = delete;
    VpcTree& operator=(const VpcTree&) = delete;
    virtual ~VpcTree();

    /// Replaces the section planes by these, moved into the tree's frame.
    /// \param toTree from the planes' frame to the tree's
    void SetSectionPlanes(const SectionPlanes& sections, const VpcTransform3D& toTree);
    /// Takes all section planes away.
    void ClearSectionPlanes() { sections_.clear(); }
    /// Whether the point is on no plane's far side, the one that the plane's normal points away
    /// from.
    bool verifyPointWrtSections(const VpcPoint3D& p) const {
        return verifyPointWrtSections(p.x, p.y, p.z);
    }
    bool verifyPointWrtSections(double x, double y, double z) const;

    /// Replaces the clipping regions.
    void SetLocalClippings(const std::vector<GiPcClipConfig>& configs);
    /// Whether the point passes every region.
    bool verifyPointWrtClippings(double x, double y, double z) const;

    /// Whether the point passes all planes and regions.
    bool Passes(double x, double y, double z) const {
        return verifyPointWrtSections(x, y, z) && verifyPointWrtClippings(x, y, z);
    }
    /// Whether there is any plane or region at all.
    bool FiltersPoints() const { return !sections_.empty() || !clippings_.empty(); }

    /// The planes in the tree's frame.
    const SectionPlanes& GetSectionPlanes() const { return sections_; }
    const std::vector<VpcClipping>& GetClippings() const { return clippings_; }
    const VpcTransform3D& GetSectionTransform() const { return sectionTransform_; }

private:
    SectionPlanes sections_;
    std::vector<VpcClipping> clippings_;
    VpcTransform3D sectionTransform_;
};
