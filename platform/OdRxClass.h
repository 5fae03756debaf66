#pragma once

#include "platform/OdPlatform.h"

/// Stand-in for the host SDK's description of a run-time class.
class OD_EXPORT OdRxClass {
public:
    /// `parent` is null for the root of all classes.
    explicit OdRxClass(const OdRxClass* parent) : parent_(parent) {}
    OdRxClass(const OdRxClass&) = delete;
    OdRxClass& operator=(const OdRxClass&) = delete;

    /// Whether it is `other` or descends from it.
    bool isDerivedFrom(const OdRxClass* other) const;

private:
    const OdRxClass* parent_;
};
