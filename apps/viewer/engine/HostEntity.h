#pragma once

#include "platform/PcDbPointCloud.h"
#include "viewer/document/Entity.h"

namespace vpc::viewer {

// The host's entity and the document's. The host's one knows neither the id nor whether it is
// visible, and of the file only what its definition tells.

/// What the host's entity is, with those of `rest` for what it does not know.
Entity stateOf(const PcDbPointCloud& entity, const Entity& rest);
/// Brings the host's entity to a state.
void setState(PcDbPointCloud& entity, const Entity& state);

}  // namespace vpc::viewer
