#pragma once

#include "platform/OdRxObject.h"

class OdDbDatabase;

/// Stand-in for an object of a drawing in the host SDK. It is always open for reading, and open for
/// writing between upgradeOpen and downgradeOpen.
class OD_EXPORT OdDbObject : public OdRxObject {
    ODRX_DECLARE_MEMBERS(OdDbObject)

public:
    /// The drawing, which outlives the object; null when it is in none.
    OdDbDatabase* database() const { return database_; }
    void setDatabase(OdDbDatabase* database) { database_ = database; }

    void upgradeOpen() { writeEnabled_ = true; }
    void downgradeOpen() { writeEnabled_ = false; }
    bool isWriteEnabled() const { return writeEnabled_; }

protected:
    OdDbObject() = default;
    /// Throws OdError where the object is not open for writing. Every setter calls it first.
    void assertWriteEnabled() const;

private:
    OdDbDatabase* database_ = nullptr;
    bool writeEnabled_ = false;
};
