#pragma once

#include "platform/OdPlatform.h"

/// Stand-in for the host SDK's colour of an entity: how it is meant in the top byte, then red,
/// green and blue.
class OdCmEntityColor {
public:
    enum ColorMethod : OdUInt8 {
        kByLayer = 0xC0,
        kByBlock = 0xC1,
        kByColor = 0xC2,
        kByACI = 0xC3,
        kByPen = 0xC4,
        kForeground = 0xC5,
        kNone = 0xC8
    };

    OdCmEntityColor() = default;
    explicit OdCmEntityColor(ColorMethod method) { setColorMethod(method); }
    OdCmEntityColor(OdUInt8 red, OdUInt8 green, OdUInt8 blue) { setRGB(red, green, blue); }

    /// The whole 32 bits.
    OdUInt32 color() const { return bits_; }
    void setColor(OdUInt32 bits) { bits_ = bits; }

    ColorMethod colorMethod() const { return static_cast<ColorMethod>(bits_ >> 24U); }
    void setColorMethod(ColorMethod method) {
        bits_ = (bits_ & 0x00FFFFFFU) | static_cast<OdUInt32>(method) << 24U;
    }

    OdUInt8 red() const { return static_cast<OdUInt8>(bits_ >> 16U & 0xFFU); }
    OdUInt8 green() const { return static_cast<OdUInt8>(bits_ >> 8U & 0xFFU); }
    OdUInt8 blue() const { return static_cast<OdUInt8>(bits_ & 0xFFU); }
    void setRed(OdUInt8 red) { setRGB(red, green(), blue()); }
    void setGreen(OdUInt8 green) { setRGB(red(), green, blue()); }
    void setBlue(OdUInt8 blue) { setRGB(red(), green(), blue); }
    /// The colour method becomes kByColor.
    void setRGB(OdUInt8 red, OdUInt8 green, OdUInt8 blue) {
        bits_ = OdUInt32{kByColor} << 24U | OdUInt32{red} << 16U | OdUInt32{green} << 8U | blue;
    }

    bool operator==(const OdCmEntityColor&) const = default;

private:
    OdUInt32 bits_ = OdUInt32{kByColor} << 24U;
};
