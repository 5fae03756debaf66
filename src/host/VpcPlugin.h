#pragma once

#include "host/VpcExport.h"

class OdOPMClientExtension;
class PcDbPointCloudDefPE;

/// Where a host begins that has loaded the plug-in: a new extension, which the caller deletes
/// through its virtual destructor before it unloads the plug-in. Null without memory.
extern "C" VPC_EXPORT PcDbPointCloudDefPE* vpcCreatePointCloudExtension();

/// The property palette's extension, which the host's extension manager knows until it is deleted;
/// owned as above. Null without memory.
extern "C" VPC_EXPORT OdOPMClientExtension* vpcCreatePropertiesExtension();
