#pragma once

#include "host/VpcExport.h"
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
    void cleanPointSet(GiPointSetDefinition* set) override;
};
