#pragma once

#include "platform/OdPlatform.h"

/// Stand-in for the host SDK's colour of an entity: the colour method in the top byte, then red,
/// green and blue.
class OdCmEntityColor {
public:
    /// Hosts know more methods, such as by layer, but no point has them.
    enum ColorMethod : OdUInt8 { kByColor = 0xC2 };

    OdCmEntityColor() = default;
    explicit OdCmEntityColor(ColorMethod method) : bits_(OdUInt32{method} << 24U) {}

    /// The whole 32 bits.
    OdUInt32 color() const { return bits_; }
    void setColor(OdUInt32 bits) { bits_ = bits; }

    OdUInt8 red() const { return static_cast<OdUInt8>(bits_ >> 16U & 0xFFU); }
    OdUInt8 green() const { return static_cast<OdUInt8>(bits_ >> 8U & 0xFFU); }
    OdUInt8 blue() const { return static_cast<OdUInt8>(bits_ & 0xFFU); }
    /// Also sets the colour method to kByColor.
    void setRGB(OdUInt8 red, OdUInt8 green, OdUInt8 blue) {
        bits_ = OdUInt32{kByColor} << 24U | OdUInt32{red} << 16U | OdUInt32{green} << 8U | blue;
    }

private:
    OdUInt32 bits_ = OdUInt32{kByColor} << 24U;
};
