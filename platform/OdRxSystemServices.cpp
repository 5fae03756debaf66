#include "platform/OdRxSystemServices.h"

#include <array>
#include <random>
#include <string>

namespace {

/// Sixteen random bytes with the bits that mark a version 4 UUID.
std::array<unsigned, 16> randomBytes() {
    std::random_device source;
    std::uniform_int_distribution<unsigned> byteValues(0, 255);
    std::array<unsigned, 16> bytes{};
    for (unsigned& byte : bytes) byte = byteValues(source);
    bytes[6] = (bytes[6] & 0x0FU) | 0x40U;
    bytes[8] = (bytes[8] & 0x3FU) | 0x80U;
    return bytes;
}

}  // namespace

OdString OdRxSystemServices::createGuid() {
    constexpr const char* digits = "0123456789abcdef";
    const std::array<unsigned, 16> bytes = randomBytes();
    std::string text;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (i == 4 || i == 6 || i == 8 || i == 10) text += '-';
        text += digits[bytes[i] >> 4U];
        text += digits[bytes[i] & 0xFU];
    }
    return {text.c_str()};
}

OdRxSystemServices* odrxSystemServices() {
    static OdRxSystemServices services;
    return &services;
}
