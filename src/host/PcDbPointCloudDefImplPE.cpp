#include "host/PcDbPointCloudDefImplPE.h"

#include <memory>

#include <wx/filename.h>

#include "core/util/StringTools.h"
#include "host/PcCorePointSet.h"

namespace {

wxString folderOf(const OdString& path) {
    return wxFileName(StringTools::FromOdString(path)).GetPath(wxPATH_GET_VOLUME);
}

OdString resolved(const OdString& fileName, const OdString& referencePath) {
    const wxString name = StringTools::FromOdString(fileName);
    if (name.empty() || name.StartsWith("/")) return fileName;
    wxFileName path(name);
    path.Normalize(wxPATH_NORM_DOTS | wxPATH_NORM_TILDE | wxPATH_NORM_ABSOLUTE,
                   folderOf(referencePath));
    return StringTools::ToOdString(path.GetFullPath());
}

}  // namespace

PcDbPointCloudDefImplPE::PcDbPointCloudDefImplPE() = default;

PcDbPointCloudDefImplPE::~PcDbPointCloudDefImplPE() = default;

GiPointSetDefinition* PcDbPointCloudDefImplPE::loadProject(PcDbPointCloudDef* /*def*/,
                                                           const OdString& fileName,
                                                           const OdString& referencePath) {
    auto set = std::make_unique<PcCorePointSet>();
    return set->loadProjectFromFile(resolved(fileName, referencePath)) ? set.release() : nullptr;
}

GiPointSetDefinition* PcDbPointCloudDefImplPE::loadPointSet(const OdString& fileName,
                                                            const OdString& referencePath,
                                                            wxString& problem) {
    auto set = std::make_unique<PcCorePointSet>();
    return set->loadProjectFromFile(resolved(fileName, referencePath), problem) ? set.release()
                                                                                : nullptr;
}

void PcDbPointCloudDefImplPE::cleanPointSet(GiPointSetDefinition* set) {
    const std::unique_ptr<GiPointSetDefinition> owned(set);
}
