#pragma once

#include "host/VpcExport.h"
#include "platform/OdOPMClientExtension.h"
#include "platform/PcDbPointCloudDefPE.h"
#include "platform/TreePreparePars.h"
#include "tree/construct/PrepareObserver.h"
#include "tree/construct/TreePrepareResult.h"

/// A host that has loaded the plug-in begins here. Returns a new extension, which the caller
/// deletes before it unloads the plug-in; null when memory is short.
extern "C" VPC_EXPORT PcDbPointCloudDefPE* vpcCreatePointCloudExtension();

/// Returns a new extension of the property palette. The host's extension manager knows it until the
/// caller deletes it. Ownership and null are as above.
extern "C" VPC_EXPORT OdOPMClientExtension* vpcCreatePropertiesExtension();

/// Calls PcCorePointSet::preparePointData and returns whether it succeeded. When memory is short it
/// returns false and leaves `result` alone.
extern "C" VPC_EXPORT bool vpcPreparePointData(const TreePreparePars& pars,
                                               TreePrepareResult& result);

/// The same, watched by `observer`: it is told how far the run is and what the scans hold, and can
/// end the run.
extern "C" VPC_EXPORT bool vpcPreparePointDataObserved(const TreePreparePars& pars,
                                                       PrepareObserver& observer,
                                                       TreePrepareResult& result);
