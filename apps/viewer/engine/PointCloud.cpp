#include "viewer/engine/PointCloud.h"

#include <sys/stat.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <stdexcept>

#include <glm/geometric.hpp>

#include "platform/OdSystemVariables.h"
#include "viewer/engine/HostEntity.h"
#include "viewer/engine/HostText.h"
#include "viewer/engine/Property.h"

namespace vpc::viewer {

namespace {

OdGePoint3d toHost(const glm::dvec3& v) {
    return {v.x, v.y, v.z};
}

glm::dvec3 toVector(const OdGePoint3d& p) {
    return {p.x, p.y, p.z};
}

/// Nothing where there is no such file.
std::pair<dev_t, ino_t> identityOf(const std::string& file) {
    struct stat found {};
    if (stat(file.c_str(), &found) != 0) return {};
    return {found.st_dev, found.st_ino};
}

/// Point sets take no budget below.
constexpr unsigned long long fewestSlots = 51;

GiPcStylizationType stylizationOf(const PcDbPointCloud& entity) {
    switch (entity.stylizationType()) {
        case Host_Elevation:
            return GiPc_Stylization_ELEVATION;
        case Host_Intensity:
            return GiPc_Stylization_INTENSITY;
        default:
            return GiPc_Stylization_SCANCOLORS;
    }
}

/// The clip as the host describes it, in the points' frame.
GiPcClipConfig configOf(const Clip& clip, const Placement& placement) {
    const glm::dvec3 normal = placement.DirectionToPoints(glm::cross(clip.xAxis, clip.yAxis));
    GiPcClipConfig config;
    config.type = 1;
    config.flag2 = clip.keepsInside;
    config.plane =
        OdGePlane(toHost(placement.ToPoints(clip.origin)), {normal.x, normal.y, normal.z});
    for (const glm::dvec2& corner : clip.corners) {
        const glm::dvec3 place = clip.origin + clip.xAxis * corner.x + clip.yAxis * corner.y;
        // The host's planes choose their axes themselves.
        config.vertices.append(toHost(placement.ToPoints(place)).convert2d(config.plane));
    }
    return config;
}

bool areSame(const OdGeVector3d& a, const OdGeVector3d& b) {
    return a.x == b.x && a.y == b.y && a.z == b.z;
}

/// As a float, whatever it is: neither a NaN nor anything that overflows in a renderer.
float toFloat(double value) {
    constexpr double farthest = 1e18;
    return static_cast<float>(std::min(std::max(-farthest, value), farthest));
}

}  // namespace

PointCloud::PointCloud(const Plugin& plugin, OdDbDatabase& drawing, const Entity& entity)
    : plugin_(plugin),
      rest_(entity),
      opened_(identityOf(entity.file)),
      points_(plugin.Load(entity.file)) {
    definition_.setDatabase(&drawing);
    definition_.setActiveFileName(toHostText(rest_.file));
    definition_.setPointSet(points_.get());
    entity_.setDatabase(&drawing);
    entity_.upgradeOpen();
    entity_.setPointCloudDefExId(OdDbObjectId(&definition_));
    entity_.downgradeOpen();
    setState(entity_, entity);
    Hide();
}

PointCloud::~PointCloud() {
    definition_.setPointSet(nullptr);
}

Entity PointCloud::State() const {
    return stateOf(entity_, rest_);
}

void PointCloud::SetState(const Entity& entity) {
    rest_.visible = entity.visible;
    setState(entity_, entity);
}

OdDb::UnitsValue PointCloud::Unit() const {
    const OdUInt32 unit = points_->getPointModelUnit();
    return unit <= OdDb::kUnitsParsecs ? static_cast<OdDb::UnitsValue>(unit)
                                       : OdDb::kUnitsUndefined;
}

Box PointCloud::Bounds() const {
    const ViewFacts facts = plugin_.Facts(*points_);
    if (!(facts.boundsMin.x <= facts.boundsMax.x)) return {};
    return {toVector(facts.boundsMin), toVector(facts.boundsMax)};
}

// --- Showing -------------------------------------------------------------------------------------

PointCloud::Style PointCloud::ShownStyle() const {
    Style style{stylizationOf(entity_), GiPc_ColorScheme_ScanColors};
    OPMVariant scheme;
    // The plug-in knows which scheme a GUID means.
    if (plugin_.Palette().getPropertyValue(&entity_, Property::colourScheme, {}, scheme) &&
        scheme.varType() == OPMVariant::kInt)
        style.scheme = static_cast<GiPcColorScheme>(scheme.getInt());
    return style;
}

void PointCloud::Show(const ViewRequest& request, unsigned long long budget) {
    const HostView view(request.camera, request.size, State().placement, Bounds());
    if (!view.IsSound()) Hide();
    if (!isSound(State().placement))
        throw std::runtime_error(quoted(State().name) +
                                 " cannot be shown where it is: its insertion, rotation and scale "
                                 "have to be numbers, and the scale above 0.");
    if (!view.IsSound()) return;
    const bool moved = view_ != view;
    // Until all has gone well.
    view_.reset();
    const bool cropped = entity_.showCropping();
    // Without short cuts: all of them have to be done.
    bool changed = ApplyStyle();
    changed =
        ApplySections(cropped ? request.drawing.sections : std::vector<Section>(), view) || changed;
    changed = ApplyClips(cropped ? request.drawing.clips : std::vector<Clip>()) || changed;
    const unsigned long long slots = SlotsFor(budget);
    if (changed || moved || slots != points_->maxNrPointsInBuffer()) ChoosePoints(view, slots);
    view_ = view;
}

void PointCloud::ChoosePoints(const HostView& view, unsigned long long slots) {
    ChoosePointsWithin(view, slots);
    ViewFacts facts = plugin_.Facts(*points_);
    // Only some nodes of a level are shown then. A coarser one shows the whole.
    while (facts.budget < facts.budgetWanted && slots > fewestSlots) {
        refusedSlots_ = slots;
        lacksMemory_ = true;
        slots = std::max(slots / 2, fewestSlots);
        ChoosePointsWithin(view, slots);
        facts = plugin_.Facts(*points_);
    }
}

void PointCloud::ChoosePointsWithin(const HostView& view, unsigned long long slots) {
    // The variable is the process's, so every point set gets its own value right before.
    odSystemVariables().setInt("POINTCLOUDPOINTMAX", static_cast<OdInt32>(slots));
    points_->updateVisiblePoints(view.Matrix(), view.Camera(), view.Target(), view.Up(),
                                 view.FieldWidth(), view.FieldHeight(), view.Size().width,
                                 view.Size().height, view.IsPerspective());
}

void PointCloud::Hide() {
    view_.reset();
    refusedSlots_ = 0;
    points_->setMaxNrPointsInBuffer(fewestSlots);
}

bool PointCloud::ApplyStyle() {
    const Style style = ShownStyle();
    if (style == style_) return false;
    points_->setStylizationType(style.stylization);
    points_->setColorScheme(style.scheme);
    style_ = style;
    return true;
}

bool PointCloud::ApplySections(const std::vector<Section>& sections, const HostView& view) {
    Planes planes;
    for (const Section& section : sections)
        if (section.enabled)
            planes.emplace_back(view.ToHost(section.point),
                                OdGeVector3d(section.normal.x, section.normal.y, section.normal.z));
    const auto same = [](const auto& a, const auto& b) {
        return a.first == b.first && areSame(a.second, b.second);
    };
    if (std::equal(planes.begin(), planes.end(), planes_.begin(), planes_.end(), same))
        return false;
    points_->clearSections(true);
    for (const auto& [point, normal] : planes) points_->addSection({}, point, normal, true);
    planes_ = planes;
    return true;
}

bool PointCloud::ApplyClips(const std::vector<Clip>& clips) {
    std::vector<Clip> enabled;
    constexpr std::size_t fewestCorners = 3;
    std::copy_if(clips.begin(), clips.end(), std::back_inserter(enabled), [](const Clip& clip) {
        return clip.enabled && clip.corners.size() >= fewestCorners;
    });
    const Placement placement = State().placement;
    if (enabled == clips_ && (placement == clipped_ || enabled.empty())) return false;
    points_->clearClippings();
    for (const Clip& clip : enabled) points_->addClipping(configOf(clip, placement));
    clips_ = enabled;
    clipped_ = placement;
    return true;
}

unsigned long long PointCloud::MostSlots() const {
    // A point set shows fewer points than it has slots for, and needs none beyond its own.
    constexpr unsigned long long spare = 2;
    constexpr unsigned long long most = std::numeric_limits<OdInt32>::max();
    return std::clamp(Total() + spare, fewestSlots, most);
}

unsigned long long PointCloud::SlotsFor(unsigned long long budget) {
    const unsigned long long wanted = std::clamp(budget, fewestSlots, MostSlots());
    lacksMemory_ = refusedSlots_ != 0 && wanted >= refusedSlots_;
    return lacksMemory_ ? points_->maxNrPointsInBuffer() : wanted;
}

// --- What is shown -------------------------------------------------------------------------------

std::span<const OdGePoint3d> PointCloud::Coordinates() const {
    return {points_->getPointCoordinates(), static_cast<std::size_t>(Shown())};
}

ShownEntity PointCloud::Facts() const {
    const ViewFacts facts = plugin_.Facts(*points_);
    ShownEntity shown;
    shown.id = rest_.id;
    shown.shown = Shown();
    shown.inAll = Total();
    shown.level = facts.level;
    shown.levels = facts.levels;
    shown.problem = FileProblem();
    if (view_ == std::nullopt) return shown;
    if (facts.pointsMissing > 0) shown.problem = facts.problem.utf8_string();
    if (lacksMemory_)
        shown.problem = "There is not enough memory for the budget; of " + quoted(State().name) +
                        " at most " + std::to_string(facts.budget) + " points are shown.";
    // Not even the coarsest level finds room then.
    const bool lacksSlots = facts.level == 0 && facts.budget < Total();
    if (shown.shown == 0 && lacksSlots && view_->SeesCentreOf(Bounds()))
        shown.problem = "The budget is too small to show anything of " + quoted(State().name) + ".";
    const bool hasRamp = style_.stylization != GiPc_Stylization_SCANCOLORS &&
                         style_.scheme != GiPc_ColorScheme_ScanColors;
    if (shown.shown == 0 || !hasRamp) return shown;
    const bool isElevation = style_.stylization == GiPc_Stylization_ELEVATION;
    const double unit = isElevation ? view_->Scale() : 1.0;
    shown.legendTitle = isElevation ? "Elevation" : "Intensity";
    shown.ramp = plugin_.Ramp(style_.scheme);
    shown.range = {facts.valueMin * unit, facts.valueMax * unit};
    return shown;
}

std::string PointCloud::FileProblem() const {
    const auto now = identityOf(rest_.file);
    if (now == opened_) return {};
    if (now == std::pair<dev_t, ino_t>())
        return quoted(rest_.file) + " was deleted or moved. What is still open of it is shown.";
    return quoted(rest_.file) + " was replaced by another file. Close it and open it again.";
}

double PointCloud::ShownArea() const {
    // A few thousand points tell the extent well enough.
    constexpr std::size_t samples = 4096;
    const auto points = Coordinates();
    const std::size_t step = points.size() / samples + 1;
    Box box;
    for (std::size_t i = 0; i < points.size(); i += step) box.Add(toVector(points[i]));
    if (box.IsEmpty() || !view_) return 0.0;
    const glm::dvec3 size = (box.max - box.min) * view_->Scale();
    const double area = size.x * size.y + size.y * size.z + size.z * size.x;
    return std::isfinite(area) ? area : 0.0;
}

std::size_t PointCloud::CopyTo(std::span<PointVertex> memory, const glm::dvec3& origin) const {
    if (!view_) return 0;
    const std::size_t count = std::min(memory.size(), Coordinates().size());
    const OdGePoint3d* const points = points_->getPointCoordinates();
    const OdCmEntityColor* const colours = points_->getPointColors();
    const OdGePoint3d from = view_->ToHost(origin);
    const double scale = view_->Scale();
    PointVertex* const vertices = memory.data();
    for (std::size_t i = 0; i < count; ++i) {
        const OdGePoint3d& p = points[i];
        vertices[i] = {toFloat((p.x - from.x) * scale), toFloat((p.y - from.y) * scale),
                       toFloat((p.z - from.z) * scale), colours[i].color() & 0xFFFFFFU};
    }
    return count;
}

std::optional<Pick> PointCloud::PickAt(const glm::dvec3& place) const {
    if (!view_) return std::nullopt;
    const OdGePoint3d at = view_->ToHost(place);
    OdArray<OdGePoint3d> found;
    points_->getOsnapPoints(at, at, view_->Matrix(), view_->Matrix(), found);
    if (found.isEmpty()) return std::nullopt;
    const OdGePoint3d& picked = std::as_const(found)[0];
    Pick pick{view_->ToDrawing(picked), {}, rest_.id};
    const auto points = Coordinates();
    const auto slot = std::find(points.begin(), points.end(), picked);
    if (slot != points.end()) {
        const OdCmEntityColor& colour = points_->getPointColors()[slot - points.begin()];
        pick.colour = {colour.red(), colour.green(), colour.blue()};
    }
    return pick;
}

}  // namespace vpc::viewer
