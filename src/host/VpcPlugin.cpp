#include "host/VpcPlugin.h"

#include <memory>
#include <new>

#include "host/PcDbPointCloudDefImplPE.h"

PcDbPointCloudDefPE* vpcCreatePointCloudExtension() {
    // Found by its plain name, hence called like a C function: nothing may be thrown out of it.
    try {
        return std::make_unique<PcDbPointCloudDefImplPE>().release();
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}
