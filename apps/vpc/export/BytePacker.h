#pragma once

#include <array>
#include <cstring>
#include <string>

namespace vpc {

/// Appends little-endian values to bytes, without padding.
class BytePacker {
public:
    explicit BytePacker(std::string& bytes) : bytes_(bytes) {}

    template <class T>
    void Put(T value) {
        std::array<char, sizeof value> raw;
        std::memcpy(raw.data(), &value, sizeof value);
        bytes_.append(raw.data(), raw.size());
    }
    /// A text that takes `width` bytes.
    void PutText(const char* text, std::size_t width) {
        const std::size_t length = std::strlen(text);
        bytes_.append(text, length).append(width - length, '\0');
    }
    void PutZeros(std::size_t count) { bytes_.append(count, '\0'); }

private:
    std::string& bytes_;
};

}  // namespace vpc
