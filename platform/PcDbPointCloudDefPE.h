#pragma once

#include "platform/OdRxObject.h"
#include "platform/OdString.h"

class GiPointSetDefinition;
class PcDbPointCloudDef;

/// The host asks this extension for the points of a point-cloud definition.
class OD_EXPORT PcDbPointCloudDefPE : public OdRxObject {
public:
    ~PcDbPointCloudDefPE() override;

    /// A point set for a file, or null. A relative name is taken from the folder of
    /// `referencePath`. The caller owns the point set and gives it back to cleanPointSet.
    virtual GiPointSetDefinition* loadProject(PcDbPointCloudDef* def, const OdString& fileName,
                                              const OdString& referencePath) = 0;
    /// Deletes what loadProject returned; null is ignored.
    virtual void cleanPointSet(GiPointSetDefinition* set) = 0;
};
