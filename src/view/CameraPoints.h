#pragma once

#include "core/geometry/VpcPoint3D.h"
#include "platform/OdGePoint3d.h"

// The camera that the orders of picking measure from: PcCoreVisibleNodeManager's predicates take
// two elements and nothing else. Set by each pick, which must therefore not run beside another.

extern VpcPoint3D camPointVpc;
extern OdGePoint3d camPointOda;
