#pragma once

#include "platform/OdPlatform.h"
#include "platform/OdRxClass.h"

/// Stand-in for the base of the host SDK's run-time classes. Objects may be deleted through a
/// pointer to it.
class OD_EXPORT OdRxObject {
public:
    virtual ~OdRxObject();

    static const OdRxClass* desc();
    /// The description of the class that the object was created as.
    virtual const OdRxClass* isA() const;
    bool isKindOf(const OdRxClass* other) const { return isA()->isDerivedFrom(other); }

protected:
    OdRxObject() = default;
    OdRxObject(const OdRxObject&) = default;
    OdRxObject& operator=(const OdRxObject&) = default;
};

// NOLINTBEGIN(bugprone-macro-parentheses): the arguments are names of classes

// Declares what every run-time class has: its description, and casts that return null for null and
// for an object of another class.
#define ODRX_DECLARE_MEMBERS(ClassName)                                \
public:                                                                \
    static const OdRxClass* desc();                                    \
    const OdRxClass* isA() const override;                             \
    static ClassName* cast(OdRxObject* object) {                       \
        const bool fits = object && object->isKindOf(desc());          \
        return fits ? static_cast<ClassName*>(object) : nullptr;       \
    }                                                                  \
    static const ClassName* cast(const OdRxObject* object) {           \
        const bool fits = object && object->isKindOf(desc());          \
        return fits ? static_cast<const ClassName*>(object) : nullptr; \
    }

// Belongs into exactly one source file, so that the host and all plug-ins see one description.
#define ODRX_DEFINE_MEMBERS(ClassName, ParentClass)              \
    const OdRxClass* ClassName::desc() {                         \
        static const OdRxClass description(ParentClass::desc()); \
        return &description;                                     \
    }                                                            \
    const OdRxClass* ClassName::isA() const {                    \
        return desc();                                           \
    }

// NOLINTEND(bugprone-macro-parentheses)
