#pragma once

#include <cstdint>
#include <cstring>
#include <string>

/// Puts the bytes of a value into a string that holds binary data.
template <class T>
void put(std::string& bytes, std::size_t position, T value) {
    std::memcpy(bytes.data() + position, &value, sizeof value);
}

/// The header of a LAS scan with this number of points, in format 3 and in millimetres.
inline std::string lasHeader(std::uint32_t points) {
    std::string header(227, '\0');
    header.replace(0, 4, "LASF");
    put<std::uint8_t>(header, 24, 1);
    put<std::uint8_t>(header, 25, 2);
    put<std::uint16_t>(header, 94, 227);
    put<std::uint32_t>(header, 96, 227);
    put<std::uint8_t>(header, 104, 3);
    put<std::uint16_t>(header, 105, 34);
    put<std::uint32_t>(header, 107, points);
    for (std::size_t axis = 0; axis < 3; ++axis) put(header, 131 + 8 * axis, 0.001);
    return header;
}
