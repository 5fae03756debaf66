#pragma once

#include "core/geometry/VpcPoint3D.h"
#include "platform/OdGePoint3d.h"

// The camera from which a pick measures distances. It is global because the predicates of
// PcCoreVisibleNodeManager take two elements and nothing else. Every pick sets it, so that no two
// picks may run at once.

extern VpcPoint3D camPointVpc;
extern OdGePoint3d camPointOda;
