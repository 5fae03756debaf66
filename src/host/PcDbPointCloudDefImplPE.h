#pragma once

#include <wx/string.h>

#include "host/VpcExport.h"
#include "platform/GiPointSetDefinition.h"
#include "platform/PcDbPointCloudDef.h"
#include "platform/PcDbPointCloudDefPE.h"

/// Gives the host the point set of a point tree file.
class VPC_EXPORT PcDbPointCloudDefImplPE final : public PcDbPointCloudDefPE {
public:
    PcDbPointCloudDefImplPE();
    ~PcDbPointCloudDefImplPE() override;

    /// Returns a loaded point set, which the caller owns until it hands it to cleanPointSet, or
    /// null when the file is missing or damaged. Throws OdError when the file is of another
    /// version.
    ///
    /// \param def           not used
    /// \param fileName      used as it is when it is empty or begins with "/"
    /// \param referencePath a file; relative names are looked for in its folder
    GiPointSetDefinition* loadProject(PcDbPointCloudDef* def, const OdString& fileName,
                                      const OdString& referencePath) override;
    /// The same without OdError: null for such a file, too, and `problem` is a sentence that says
    /// why and names the file; empty after a success.
    static GiPointSetDefinition* loadPointSet(const OdString& fileName,
                                              const OdString& referencePath, wxString& problem);
    void cleanPointSet(GiPointSetDefinition* set) override;
};
