#pragma once

#include "host/VpcExport.h"
#include "platform/OdOPMClientExtension.h"
#include "platform/PcDbPointCloudDefPE.h"
#include "platform/TreePreparePars.h"
#include "tree/construct/TreePrepareResult.h"

/// Where a host begins that has loaded the plug-in: a new extension, which the caller deletes
/// through its virtual destructor before it unloads the plug-in. Null without memory.
extern "C" VPC_EXPORT PcDbPointCloudDefPE* vpcCreatePointCloudExtension();

/// The property palette's extension, which the host's extension manager knows until it is deleted;
/// owned as above. Null without memory.
extern "C" VPC_EXPORT OdOPMClientExtension* vpcCreatePropertiesExtension();

/// PcCorePointSet::preparePointData for a host that has only the names above: whether it succeeded.
/// False with `result` untouched without memory.
extern "C" VPC_EXPORT bool vpcPreparePointData(const TreePreparePars& pars,
                                               TreePrepareResult& result);
