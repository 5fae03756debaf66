#include "viewer/engine/HostEntity.h"

#include "viewer/engine/HostText.h"

namespace vpc::viewer {

namespace {

/// Keeps an entity open for writing while it lives.
class OpenForWrite {
public:
    explicit OpenForWrite(OdDbObject& object) : object_(object) { object_.upgradeOpen(); }
    ~OpenForWrite() { object_.downgradeOpen(); }
    OpenForWrite(const OpenForWrite&) = delete;
    OpenForWrite& operator=(const OpenForWrite&) = delete;

private:
    OdDbObject& object_;
};

}  // namespace

Entity stateOf(const PcDbPointCloud& entity, const Entity& rest) {
    const OdGePoint3d& location = entity.location();
    Entity state = rest;
    state.name = fromHostText(entity.getPointCloudName());
    state.placement = {{location.x, location.y, location.z}, entity.rotation(), entity.scale()};
    state.stylization = entity.stylizationType();
    state.colourScheme = fromHostText(entity.getCurrentColorScheme());
    state.cropped = entity.showCropping();
    state.locked = entity.locked();
    return state;
}

void setState(PcDbPointCloud& entity, const Entity& state) {
    const glm::dvec3& location = state.placement.location;
    const OpenForWrite open(entity);
    entity.setPointCloudName(toHostText(state.name));
    entity.setLocation({location.x, location.y, location.z});
    entity.setRotation(state.placement.rotation);
    entity.setScale(state.placement.scale);
    entity.setStylizationType(state.stylization);
    entity.setCurrentColorScheme(toHostText(state.colourScheme));
    entity.setShowCropping(state.cropped);
    entity.setLocked(state.locked);
}

}  // namespace vpc::viewer
