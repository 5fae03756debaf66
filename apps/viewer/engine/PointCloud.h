#pragma once

#include <sys/types.h>

#include <optional>
#include <span>
#include <utility>
#include <vector>

#include "platform/OdDbDatabase.h"
#include "platform/PcDbPointCloud.h"
#include "platform/PcDbPointCloudDef.h"
#include "viewer/camera/Box.h"
#include "viewer/document/Clip.h"
#include "viewer/document/Entity.h"
#include "viewer/document/Section.h"
#include "viewer/drawing/PointVertex.h"
#include "viewer/engine/HostView.h"
#include "viewer/engine/Plugin.h"
#include "viewer/engine/ViewRequest.h"
#include "viewer/tools/Pick.h"

namespace vpc::viewer {

/// What a host keeps of one point cloud: the entity in the drawing, the definition that it shows,
/// and the definition's point set. Functions that ask the plug-in may throw what it throws.
class PointCloud {
public:
    /// Loads the entity's file. Throws std::runtime_error with a sentence where that fails.
    /// \param drawing outlives this, as does the plug-in
    PointCloud(const Plugin& plugin, OdDbDatabase& drawing, const Entity& entity);
    ~PointCloud();
    PointCloud(const PointCloud&) = delete;
    PointCloud& operator=(const PointCloud&) = delete;

    /// The host's entity as the document knows it.
    Entity State() const;
    /// Brings the host's entity to a state; file and id count for nothing.
    void SetState(const Entity& entity);
    PcDbPointCloud& HostEntity() { return entity_; }

    OdDb::UnitsValue Unit() const;
    unsigned long long Total() const { return points_->getTotalNrPoints(); }
    /// The largest budget that is of use.
    unsigned long long MostSlots() const;
    unsigned long long Shown() const { return view_ ? points_->getNrVisiblePoints() : 0; }
    /// Around the points, in their own frame.
    Box Bounds() const;

    /// Chooses points for a view, at most `budget`, unless it has just that view already. Sections
    /// and clips count where the entity is cropped.
    void Show(const ViewRequest& request, unsigned long long budget);
    /// Shows nothing and gives back the memory for the points.
    void Hide();
    /// What the last Show did.
    ShownEntity Facts() const;
    /// A guess of the area that the shown points cover, in square drawing units.
    double ShownArea() const;
    /// Writes the shown points, as many as there is room for, and returns how many.
    std::size_t CopyTo(std::span<PointVertex> memory, const glm::dvec3& origin) const;
    /// The point that the snap finds near a place of the drawing.
    std::optional<Pick> PickAt(const glm::dvec3& place) const;

private:
    using Planes = std::vector<std::pair<OdGePoint3d, OdGeVector3d>>;
    struct Style {
        GiPcStylizationType stylization = GiPc_Stylization_SCANCOLORS;
        GiPcColorScheme scheme = GiPc_ColorScheme_ScanColors;
        bool operator==(const Style&) const = default;
    };

    Style ShownStyle() const;
    // Each returns whether the point set was changed.
    bool ApplyStyle();
    bool ApplySections(const std::vector<Section>& sections, const HostView& view);
    bool ApplyClips(const std::vector<Clip>& clips);
    unsigned long long SlotsFor(unsigned long long budget);
    void ChoosePoints(const HostView& view, unsigned long long slots);
    void ChoosePointsWithin(const HostView& view, unsigned long long slots);
    std::string FileProblem() const;
    std::span<const OdGePoint3d> Coordinates() const;

    const Plugin& plugin_;
    /// For what the host's entity does not know.
    Entity rest_;
    /// Which file was opened under that name.
    std::pair<dev_t, ino_t> opened_;
    PcDbPointCloudDef definition_;
    PcDbPointCloud entity_;
    Plugin::PointSet points_;

    /// Nothing while the point set shows nothing.
    std::optional<HostView> view_;
    Style style_;
    Planes planes_;
    std::vector<Clip> clips_;
    Placement clipped_;
    /// So many slots and more found no memory; 0 as long as all did.
    unsigned long long refusedSlots_ = 0;
    /// Whether the budget is larger than that.
    bool lacksMemory_ = false;
};

}  // namespace vpc::viewer
