#pragma once

#include "platform/OdPlatform.h"
#include "platform/OdString.h"

/// Stand-in for the host SDK's description of a run-time class.
class OD_EXPORT OdRxClass {
public:
    /// `parent` is null for the root of all classes.
    OdRxClass(const wchar_t* name, const OdRxClass* parent) : name_(name), parent_(parent) {}
    OdRxClass(const OdRxClass&) = delete;
    OdRxClass& operator=(const OdRxClass&) = delete;

    const OdString& name() const { return name_; }
    const OdRxClass* myParent() const { return parent_; }
    /// Whether it is `other` or descends from it.
    bool isDerivedFrom(const OdRxClass* other) const;

private:
    OdString name_;
    const OdRxClass* parent_;
};
