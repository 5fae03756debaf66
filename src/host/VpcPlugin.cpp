#include "host/VpcPlugin.h"

#include <memory>
#include <new>

#include "host/PcDbPointCloudDefImplPE.h"

PcDbPointCloudDefPE* vpcCreatePointCloudExtension() {
    // Found by its plain name, hence called like a C function: nothing may be thrown out of it.
    return std::unique_ptr<PcDbPointCloudDefPE>(new (std::nothrow) PcDbPointCloudDefImplPE)
        .release();
}
