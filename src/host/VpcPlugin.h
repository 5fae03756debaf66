#pragma once

#include "host/VpcExport.h"
#include "platform/OdOPMClientExtension.h"
#include "platform/PcDbPointCloudDefPE.h"
#include "platform/TreePreparePars.h"
#include "tree/construct/TreePrepareResult.h"

/// Where a host begins after it has loaded the plug-in: makes an extension. The caller deletes it
/// through its virtual destructor before it unloads the plug-in. Null when there is no memory.
extern "C" VPC_EXPORT PcDbPointCloudDefPE* vpcCreatePointCloudExtension();

/// Makes the extension for the property palette, which the host's extension manager knows until it
/// is deleted. The caller owns it as above. Null when there is no memory.
extern "C" VPC_EXPORT OdOPMClientExtension* vpcCreatePropertiesExtension();

/// Does what PcCorePointSet::preparePointData does, for a host that finds functions by their names.
/// \return whether it succeeded; false, with `result` untouched, when there is no memory
extern "C" VPC_EXPORT bool vpcPreparePointData(const TreePreparePars& pars,
                                               TreePrepareResult& result);
