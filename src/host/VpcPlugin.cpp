#include "host/VpcPlugin.h"

#include <memory>
#include <new>

#include "host/OPMPointCloudProperties.h"
#include "host/PcCorePointSet.h"
#include "host/PcDbPointCloudDefImplPE.h"

namespace {

/// Hosts find these functions by their plain names and call them like C functions, so no exception
/// may leave them.
template <class Extension>
Extension* create() {
    try {
        return std::make_unique<Extension>().release();
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

/// Prepares with whatever `arguments` PcCorePointSet takes.
template <class... Arguments>
bool prepare(TreePrepareResult& result, Arguments&... arguments) {
    try {
        result = PcCorePointSet::preparePointData(arguments...);
        return result.success;
    } catch (const std::bad_alloc&) {
        return false;
    }
}

}  // namespace

PcDbPointCloudDefPE* vpcCreatePointCloudExtension() {
    return create<PcDbPointCloudDefImplPE>();
}

OdOPMClientExtension* vpcCreatePropertiesExtension() {
    return create<OPMPointCloudProperties>();
}

bool vpcPreparePointData(const TreePreparePars& pars, TreePrepareResult& result) {
    return prepare(result, pars);
}

bool vpcPreparePointDataObserved(const TreePreparePars& pars, PrepareObserver& observer,
                                 TreePrepareResult& result) {
    return prepare(result, pars, observer);
}
