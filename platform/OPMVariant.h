#pragma once

#include <variant>

#include "platform/OdPlatform.h"
#include "platform/OdString.h"

/// Stand-in for the value of a property in the host's palette.
class OPMVariant {
public:
    enum Type : int { kNull = 0, kBool = 1, kInt = 2, kDouble = 3, kString = 4 };

    OPMVariant() = default;
    explicit OPMVariant(bool value) : value_(value) {}
    explicit OPMVariant(OdInt64 value) : value_(value) {}
    explicit OPMVariant(double value) : value_(value) {}
    explicit OPMVariant(const OdString& value) : value_(value) {}

    // value_ lists its alternatives in the order of Type.

    Type varType() const { return static_cast<Type>(value_.index()); }

    // Each may be called only on a value of that type.

    bool getBool() const { return std::get<bool>(value_); }
    OdInt64 getInt() const { return std::get<OdInt64>(value_); }
    double getDouble() const { return std::get<double>(value_); }
    const OdString& getString() const { return std::get<OdString>(value_); }

    bool operator==(const OPMVariant&) const = default;

private:
    std::variant<std::monostate, bool, OdInt64, double, OdString> value_;
};
