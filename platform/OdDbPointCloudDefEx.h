#pragma once

#include "platform/OdDbObject.h"
#include "platform/OdString.h"

/// Stand-in for the host SDK's point-cloud definition: a file that entities show.
class OD_EXPORT OdDbPointCloudDefEx : public OdDbObject {
    ODRX_DECLARE_MEMBERS(OdDbPointCloudDefEx)

public:
    /// The file that is shown.
    const OdString& activeFileName() const { return activeFileName_; }
    void setActiveFileName(const OdString& fileName) { activeFileName_ = fileName; }

private:
    OdString activeFileName_;
};
