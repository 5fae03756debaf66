#include "host/VpcPlugin.h"

#include <exception>
#include <memory>
#include <new>

#include <wx/translation.h>

#include "core/util/StringTools.h"
#include "core/util/VpcLogger.h"
#include "host/OPMPointCloudProperties.h"
#include "host/PcCorePointSet.h"
#include "host/PcDbPointCloudDefImplPE.h"
#include "view/PcCoreProjectManager.h"
#include "view/PointColouring.h"

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

void tellOfShortMemory(TreePrepareResult& result) {
    try {
        result.success = false;
        result.message = _("Point cloud preprocessing failed: memory is short");
    } catch (const std::bad_alloc&) {
        // The caller's false has to suffice.
    }
}

/// Prepares with whatever `arguments` PcCorePointSet takes.
template <class... Arguments>
bool prepare(TreePrepareResult& result, Arguments&... arguments) {
    try {
        result = PcCorePointSet::preparePointData(arguments...);
        return result.success;
    } catch (const std::bad_alloc&) {
        tellOfShortMemory(result);
        return false;
    }
}

/// What `call` gives; false where it throws, as it does when memory is short.
template <class Call>
bool succeeds(const Call& call) {
    try {
        return call();
    } catch (const std::exception&) {
        return false;
    }
}

/// Null for a set that is not the plug-in's.
const PcCorePointSet* pointSet(const GiPointSetDefinition& set) {
    return dynamic_cast<const PcCorePointSet*>(&set);
}

/// Null where nothing is loaded, too.
const PcCoreProjectManager* project(const GiPointSetDefinition& set) {
    const PcCorePointSet* const own = pointSet(set);
    return own == nullptr ? nullptr : own->projectManager();
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

GiPointSetDefinition* vpcLoadPointSet(const OdString& fileName, const OdString& referencePath,
                                      wxString& problem) {
    GiPointSetDefinition* set = nullptr;
    const bool isAnswered = succeeds([&] {
        set = PcDbPointCloudDefImplPE::loadPointSet(fileName, referencePath, problem);
        return true;
    });
    if (!isAnswered)
        succeeds([&] {
            problem = StringTools::FromOdString(fileName) + " " +
                      _("cannot be loaded, since memory is short");
            return true;
        });
    return set;
}

bool vpcGetViewFacts(const GiPointSetDefinition& set, vpc::ViewFacts& facts) {
    return succeeds([&] {
        const PcCorePointSet* const own = pointSet(set);
        return own != nullptr && own->getViewFacts(facts);
    });
}

OdUInt32 vpcGetSchemeColour(GiPcColorScheme scheme, double share) {
    return vpc::rampColour(static_cast<VpcColorScheme>(scheme), share);
}

bool vpcOpenLog(const wxString& file) {
    return succeeds([&] {
        VpcLogger& log = *VpcLogger::Instance();
        if (log.IsOpen()) return false;
        log.Open(file);
        // Opening writes the first line, for which there may be no room.
        if (log.endPosition != 0) return true;
        log.Close();
        return false;
    });
}

void vpcCloseLog() {
    succeeds([] {
        VpcLogger::Instance()->Close();
        return true;
    });
}

bool vpcExportView(const GiPointSetDefinition& set, const wxString& folder) {
    return succeeds([&] {
        const PcCoreProjectManager* const shown = project(set);
        return shown != nullptr && shown->lastView().SpansSpace() && shown->exportView(folder);
    });
}

bool vpcExportPick(const GiPointSetDefinition& set, const wxString& folder) {
    return succeeds([&] {
        const PcCoreProjectManager* const shown = project(set);
        return shown != nullptr && shown->lastPickView().SpansSpace() && shown->exportPick(folder);
    });
}
