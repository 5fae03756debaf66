#include "vpc/export/PointLine.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstring>

namespace vpc {

namespace {

/// Longer than any number that is written here.
constexpr std::size_t longestNumber = 40;
/// Outside these sizes a number has an exponent.
constexpr double leastPlain = 1e-6;
constexpr double mostPlain = 1e15;

/// A few numbers of decimals that most coordinates have.
struct Decimals {
    int count;
    double power;
};
constexpr std::array usualDecimals = {Decimals{3, 1e3}, Decimals{6, 1e6}};
/// Integers up to here have at most 15 digits, and so many digits tell two doubles apart.
constexpr double mostUnits = 1e15;

char* writePlain(char* out, char* end, long long units, int decimals) {
    std::array<char, 24> digits;
    const auto written = std::to_chars(digits.data(), digits.data() + digits.size(), units);
    auto length = static_cast<int>(written.ptr - digits.data());
    const int whole = length > decimals ? length - decimals : 0;
    while (decimals > 0 && length > whole && digits[static_cast<std::size_t>(length) - 1] == '0') {
        --length;
        --decimals;
    }
    if (whole == 0) *out++ = '0';
    std::memcpy(out, digits.data(), static_cast<std::size_t>(whole));
    out += whole;
    if (length == whole) return out;
    *out++ = '.';
    for (int zeros = decimals - (length - whole); zeros > 0 && out != end; --zeros) *out++ = '0';
    std::memcpy(out, digits.data() + whole, static_cast<std::size_t>(length - whole));
    return out + (length - whole);
}

/// Writes a number that has few decimals, much faster than the general way, and with the same
/// digits: a quotient of two exact integers is rounded as a text that is read is.
char* writeShortDecimal(char* out, char* end, double value) {
    const double size = std::abs(value);
    for (const auto& [count, power] : usualDecimals) {
        if (!(size * power < mostUnits)) return nullptr;
        const auto units = static_cast<long long>(std::floor(size * power + 0.5));
        if (static_cast<double>(units) / power != size) continue;
        if (std::signbit(value)) *out++ = '-';  // minus zero keeps its sign
        return writePlain(out, end, units, count);
    }
    return nullptr;
}

char* writeNumber(char* out, char* end, double value) {
    if (char* const done = writeShortDecimal(out, end, value)) return done;
    const double size = std::abs(value);
    if (size >= leastPlain && size < mostPlain)
        return std::to_chars(out, end, value, std::chars_format::fixed).ptr;
    return std::to_chars(out, end, value).ptr;
}

char* writeNumber(char* out, char* end, std::uint16_t value) {
    return std::to_chars(out, end, value).ptr;
}

}  // namespace

void PointLine::Append(std::string& text, const VpcPoint3D& p, char separator) {
    std::array<char, longestNumber> number;
    const auto add = [&](auto value, char after) {
        const char* const end = writeNumber(number.data(), number.data() + number.size(), value);
        text.append(number.data(), static_cast<std::size_t>(end - number.data()));
        text += after;
    };
    for (const double value : {p.x, p.y, p.z, p.intensity}) add(value, separator);
    add(p.red, separator);
    add(p.green, separator);
    add(p.blue, '\n');
}

}  // namespace vpc
