#include "core/util/TextScanner.h"

#include <cerrno>
#include <charconv>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>

#include <locale.h>

#include "core/util/DigitRun.h"

namespace vpc {
namespace {

constexpr std::size_t blockSize = std::size_t{1} << 20;
/// The fast path makes sure of this many characters ahead. Longer numbers take the slow path.
constexpr std::size_t fastLookAhead = 128;
/// Zeros behind the text, because eight characters are loaded at a time.
constexpr std::size_t padding = 16;
/// A double holds every integer of up to this many decimal digits exactly.
constexpr std::ptrdiff_t maxExactDigits = 15;

/// The powers of ten that a double holds exactly.
// clang-format off
constexpr double exactPowers[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                  1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                  1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
constexpr std::uint64_t integerPowers[] = {1,      10,      100,      1000,     10000,
                                           100000, 1000000, 10000000, 100000000};
// clang-format on
constexpr int maxExactPower = 22;

bool isDigit(int c) {
    return c >= '0' && c <= '9';
}

bool isHexDigit(int c) {
    return isDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

int toLower(int c) {
    return c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c;
}

bool isSpace(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

/// Appends the decimal digits at `p` to `value`, which wraps when there are too many; returns where
/// they end. It looks at up to eight characters behind the digits.
const char* readDigits(const char* p, std::uint64_t& value) {
    for (;;) {
        const DigitRun eight(p);
        const int digits = eight.length;
        if (digits == 0) return p;
        // Moves the digits up, with zeros before them, and joins them to pairs, fours and eights.
        std::uint64_t n = eight.values << (64 - 8 * digits);
        n = n * 10 + (n >> 8);
        n = ((n & 0x000000FF000000FFULL) * 0x000F424000000064ULL +
             ((n >> 16) & 0x000000FF000000FFULL) * 0x0000271000000001ULL) >>
            32;
        value = value * integerPowers[digits] + n;
        p += digits;
        if (digits < 8) return p;
    }
}

/// Reads "e", a sign and up to four digits at `p`. False if something else stands there.
bool readExponent(const char*& p, int& exponent) {
    const char* q = p + 1;
    const bool negative = *q == '-';
    if (negative || *q == '+') ++q;
    const char* digits = q;
    int magnitude = 0;
    for (; isDigit(*q) && q - digits < 4; ++q) magnitude = magnitude * 10 + (*q - '0');
    if (q == digits || isDigit(*q)) return false;
    exponent = negative ? -magnitude : magnitude;
    p = q;
    return true;
}

/// Converts a number in plain decimal notation at `p`; returns where it ends, or null if the number
/// needs the general conversion.
const char* readPlainDecimal(const char* p, double& value) {
    const bool negative = *p == '-';
    if (negative || *p == '+') ++p;
    const char* const start = p;
    std::uint64_t mantissa = 0;  // wraps on long numbers, which then do not use it
    p = readDigits(p, mantissa);
    std::ptrdiff_t digits = p - start;
    std::ptrdiff_t decimals = 0;
    if (*p == '.') {
        const char* const point = ++p;
        p = readDigits(p, mantissa);
        decimals = p - point;
        digits += decimals;
    }
    if (digits == 0) return nullptr;
    int exponent = 0;
    if (const int after = static_cast<unsigned char>(*p); after > '9') {
        const int next = toLower(after);
        if (next == 'x' || (next == 'e' && !readExponent(p, exponent))) return nullptr;
    }
    double magnitude = 0;
    const std::ptrdiff_t power = exponent - decimals;
    if (digits <= maxExactDigits && power <= 0 && power >= -maxExactPower) {
        // Both operands are exact, so the one operation rounds correctly.
        magnitude = static_cast<double>(static_cast<std::int64_t>(mantissa)) / exactPowers[-power];
    } else {
        const auto result = std::from_chars(start, p, magnitude);
        if (result.ec != std::errc{} || result.ptr != p) return nullptr;
    }
    value = negative ? -magnitude : magnitude;
    return p;
}

/// Converts an integer of up to nine digits at `p`; returns where it ends, or null if there is
/// none.
const char* readShortInt(const char* p, int& value) {
    constexpr std::ptrdiff_t mostDigits = 9;
    const bool negative = *p == '-';
    if (negative || *p == '+') ++p;
    const char* const start = p;
    std::uint64_t magnitude = 0;
    p = readDigits(p, magnitude);
    if (p == start || p - start > mostDigits) return nullptr;
    value = negative ? -static_cast<int>(magnitude) : static_cast<int>(magnitude);
    return p;
}

locale_t cLocale() {
    static const locale_t locale = newlocale(LC_ALL_MASK, "C", nullptr);
    return locale;
}

}  // namespace

void TextScanner::Attach(std::FILE* file) {
    file_ = file;
    if (buffer_ == nullptr) buffer_ = std::make_unique_for_overwrite<char[]>(blockSize + padding);
    cursor_ = end_ = buffer_.get();
    std::memset(buffer_.get(), 0, padding);
    atEnd_ = file == nullptr;
    systemError_ = 0;
    charactersRead_ = 0;
    failedAt_ = 0;
}

bool TextScanner::Refill() {
    if (atEnd_) return false;
    const auto left = static_cast<std::size_t>(end_ - cursor_);
    std::memmove(buffer_.get(), cursor_, left);
    const std::size_t wanted = blockSize - left;
    const std::size_t got = std::fread(buffer_.get() + left, 1, wanted, file_);
    atEnd_ = got < wanted;
    if (atEnd_ && std::ferror(file_) != 0) systemError_ = errno;
    charactersRead_ += got;
    cursor_ = buffer_.get();
    end_ = cursor_ + left + got;
    std::memset(buffer_.get() + left + got, 0, padding);
    return got != 0;
}

bool TextScanner::SkipWhiteSpace() {
    for (;;) {
        while (isSpace(*cursor_)) ++cursor_;  // stops at the zero after the text at the latest
        if (cursor_ != end_) return true;
        if (!Refill()) return false;
    }
}

bool TextScanner::BeginScan() {
    const bool hasText = SkipWhiteSpace();
    failedAt_ = Position();
    return hasText;
}

unsigned long long TextScanner::PositionBefore(unsigned long long words) const {
    const char* p = cursor_;
    const char* const first = buffer_.get();
    for (; words > 0 && p != first; --words) {
        while (p != first && isSpace(p[-1])) --p;
        while (p != first && !isSpace(p[-1])) --p;
    }
    return Position() - static_cast<unsigned long long>(cursor_ - p);
}

bool TextScanner::EndsLineBehindBlanks() {
    for (;;) {
        while (isSpace(*cursor_) && *cursor_ != '\n' && *cursor_ != '\r') ++cursor_;
        if (cursor_ != end_) return *cursor_ == '\n' || *cursor_ == '\r';
        if (!Refill()) return true;
    }
}

std::string_view TextScanner::Peek(std::size_t count) {
    const std::size_t wanted = count < maxPeek ? count : maxPeek;
    EnsureAhead(wanted);
    const auto ahead = static_cast<std::size_t>(end_ - cursor_);
    return {cursor_, ahead < wanted ? ahead : wanted};
}

bool TextScanner::ScanInteger(Integer& integer) {
    if (!BeginScan()) return false;
    int c = Get();
    integer.negative = c == '-';
    if (c == '-' || c == '+') c = Get();
    if (!isDigit(c)) {
        Unget(c);
        return false;
    }
    constexpr auto most = std::numeric_limits<unsigned long long>::max();
    for (; isDigit(c); c = Get()) {
        const auto digit = static_cast<unsigned long long>(c - '0');
        if (integer.magnitude > (most - digit) / 10) integer.overflow = true;
        integer.magnitude = integer.overflow ? most : integer.magnitude * 10 + digit;
    }
    Unget(c);
    return true;
}

bool TextScanner::ScanInt(int& value) {
    const char* p = cursor_;
    while (isSpace(*p)) ++p;
    int shortValue = 0;
    p = readShortInt(p, shortValue);
    if (IsWhole(p)) {
        value = shortValue;
        cursor_ = p;
        return true;
    }
    Integer integer;
    if (!ScanInteger(integer)) return false;
    // The C library converts to a 64-bit integer, whose range saturates, and keeps the low bits.
    using Limits = std::numeric_limits<long long>;
    const auto most =
        static_cast<unsigned long long>(Limits::max()) + (integer.negative ? 1ULL : 0ULL);
    const unsigned long long magnitude = integer.magnitude < most ? integer.magnitude : most;
    value = static_cast<int>(integer.negative ? 0ULL - magnitude : magnitude);
    return true;
}

bool TextScanner::ScanUnsigned(unsigned long long& value) {
    Integer integer;
    if (!ScanInteger(integer)) return false;
    const bool wraps = integer.negative && !integer.overflow;
    value = wraps ? 0ULL - integer.magnitude : integer.magnitude;
    return true;
}

bool TextScanner::ScanDouble(double& value) {
    return ScanDoubles(&value, 1) == 1;
}

std::size_t TextScanner::ScanDoubles(double* values, std::size_t count) {
    EnsureAhead(fastLookAhead);
    for (std::size_t i = 0; i < count; ++i) {
        const char* p = cursor_;
        while (isSpace(*p)) ++p;
        double value = 0;
        p = readPlainDecimal(p, value);
        if (IsWhole(p)) {
            values[i] = value;
            cursor_ = p;
        } else if (!BeginScan() || !ScanAnyDouble(values[i])) {
            return i;
        }
    }
    return count;
}

/// Collects the characters that the C library consumes for a number, even if they make no valid
/// one, and converts them.
bool TextScanner::ScanAnyDouble(double& value) {
    token_.clear();
    int c = Get();
    if (c == '-' || c == '+') {
        token_ += static_cast<char>(c);
        c = Get();
        if (c == endOfText) return false;
    }
    const std::size_t signLength = token_.size();
    if (toLower(c) == 'n') {
        token_ += 'n';
        return CollectWord("an") && ConvertToken(value);
    }
    if (toLower(c) == 'i') {
        token_ += 'i';
        if (!CollectWord("nf")) return false;
        c = Get();
        if (toLower(c) != 'i') {
            Unget(c);
        } else {
            token_ += 'i';
            if (!CollectWord("nity")) return false;
        }
        return ConvertToken(value);
    }
    const std::size_t prefixLength = CollectDigits(c) ? signLength + 2 : signLength;
    return token_.size() != prefixLength && ConvertToken(value);
}

/// Collects the rest of a word. The first character that differs is consumed as well.
bool TextScanner::CollectWord(std::string_view rest) {
    for (const char expected : rest) {
        if (toLower(Get()) != expected) return false;
        token_ += expected;
    }
    return true;
}

/// Collects digits, point and exponent from `c` on. True for a hexadecimal number.
bool TextScanner::CollectDigits(int c) {
    bool hex = false;
    bool hasDigit = false;
    if (c == '0') {
        token_ += '0';
        c = Get();
        hex = toLower(c) == 'x';
        hasDigit = !hex;
        if (hex) {
            token_ += 'x';
            c = Get();
        }
    }
    const int exponentMark = hex ? int{'p'} : int{'e'};
    bool hasExponent = false;
    bool hasPoint = false;
    for (;; c = Get()) {
        if (isDigit(c) || (hex && !hasExponent && isHexDigit(c))) {
            hasDigit = true;
        } else if (hasExponent && token_.back() == exponentMark && (c == '-' || c == '+')) {
            // The sign belongs to the exponent.
        } else if (hasDigit && !hasExponent && toLower(c) == exponentMark) {
            hasExponent = hasPoint = true;
            c = exponentMark;
        } else if (c == '.' && !hasPoint) {
            hasPoint = true;
        } else {
            Unget(c);
            break;
        }
        token_ += static_cast<char>(c);
    }
    return hex;
}

bool TextScanner::ConvertToken(double& value) const {
    char* end = nullptr;
    const double converted = strtod_l(token_.c_str(), &end, cLocale());
    if (end == token_.c_str()) return false;
    value = converted;
    return true;
}

}  // namespace vpc
