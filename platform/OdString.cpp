#include "platform/OdString.h"

#include <cstdint>
#include <string_view>

namespace {

struct Decoded {
    std::uint32_t character;
    std::size_t bytes;
};

bool isContinuation(unsigned char byte) {
    return (byte & 0xC0U) == 0x80U;
}

/// How many bytes the lead byte announces; 1 where it is none.
std::size_t sequenceLength(unsigned char lead) {
    if (lead >= 0xF0U && lead <= 0xF4U) return 4;
    if (lead >= 0xE0U && lead < 0xF0U) return 3;
    return lead >= 0xC2U && lead < 0xE0U ? 2 : 1;
}

bool isWellFormed(std::uint32_t character, std::size_t bytes) {
    if (bytes == 3) return character >= 0x800U && (character < 0xD800U || character > 0xDFFFU);
    if (bytes == 4) return character >= 0x10000U && character <= 0x10FFFFU;
    return true;
}

Decoded decodeFirst(std::string_view text) {
    const auto lead = static_cast<unsigned char>(text[0]);
    const Decoded asLatin1{lead, 1};
    const std::size_t bytes = sequenceLength(lead);
    if (bytes == 1 || bytes > text.size()) return asLatin1;
    std::uint32_t character = lead & (0x7FU >> bytes);
    for (const char next : text.substr(1, bytes - 1)) {
        const auto byte = static_cast<unsigned char>(next);
        if (!isContinuation(byte)) return asLatin1;
        character = character << 6U | (byte & 0x3FU);
    }
    return isWellFormed(character, bytes) ? Decoded{character, bytes} : asLatin1;
}

}  // namespace

OdString::OdString(const char* utf8) {
    std::string_view rest = utf8 == nullptr ? "" : utf8;
    while (!rest.empty()) {
        const Decoded first = decodeFirst(rest);
        text_ += static_cast<wchar_t>(first.character);
        rest.remove_prefix(first.bytes);
    }
}
