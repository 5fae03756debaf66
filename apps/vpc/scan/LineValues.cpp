#include "vpc/scan/LineValues.h"

#include <charconv>
#include <limits>

#include <strings.h>

#include "core/util/DigitRun.h"

namespace vpc {

namespace {

// A line is followed by its end or by zeros, which are no digits, blanks or letters. So none of
// these needs to be told where the line ends.

const char* skipDigits(const char* p) {
    for (;;) {
        const DigitRun digits(p);
        p += digits.length;
        if (digits.length < 8) return p;
    }
}

const char* skipBlanks(const char* p) {
    while (*p == ' ' || *p == '\t') ++p;
    return p;
}

bool isSign(char c) {
    return c == '-' || c == '+';
}

bool isLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

/// Skips one of the words for what is no finite number; null if there is none.
const char* skipWord(const char* p) {
    const char* end = p;
    while (isLetter(*end)) ++end;
    const std::string_view word(p, static_cast<std::size_t>(end - p));
    for (const std::string_view known : {"nan", "inf", "infinity"})
        if (word.size() == known.size() && strncasecmp(p, known.data(), known.size()) == 0)
            return end;
    return nullptr;
}

/// Skips an exponent, whose letter is at `p`; null if no digits follow it.
const char* skipExponent(const char* p) {
    ++p;
    if (isSign(*p)) ++p;
    const char* const end = skipDigits(p);
    return end == p ? nullptr : end;
}

}  // namespace

bool LineValues::Read(std::string_view line) {
    count_ = 0;
    isUnusual_ = false;
    const char* const end = line.data() + line.size();
    const char* p = skipBlanks(line.data());
    while (p != end) {
        place_ = p;
        if (count_ == most) return false;
        Value& value = values_[count_];
        value.begin = p;
        value.end = SkipNumber(p, value);
        if (value.end == nullptr) return false;
        ++count_;
        p = skipBlanks(value.end);
        if (p == end) break;
        if (style_.separator == ' ') {
            if (p == value.end) return false;
            continue;
        }
        if (*p != style_.separator) return false;
        p = skipBlanks(p + 1);
        if (p == end) isUnusual_ = true;
    }
    return true;
}

/// Skips the number at `p`; null if there is none.
const char* LineValues::SkipNumber(const char* p, Value& value) {
    const char* const whole = isSign(*p) ? p + 1 : p;
    const char* const wholeEnd = skipDigits(whole);
    const char* end = wholeEnd;
    bool hasDigits = whole != wholeEnd;
    value.isDigits = whole == p && hasDigits;
    if (*end == style_.decimal) {
        const char* const decimals = end + 1;
        end = skipDigits(decimals);
        const bool hasDecimals = end != decimals;
        // A comma with no digit before or after it separates something else.
        if (style_.decimal == ',' && !(hasDigits && hasDecimals)) return nullptr;
        hasDigits = hasDigits || hasDecimals;
        value.isDigits = false;
    }
    if (!hasDigits) return skipWord(whole);
    if (!isLetter(*end)) return end;
    const bool isFortran = *end == 'd' || *end == 'D';
    if (!isFortran && *end != 'e' && *end != 'E') return nullptr;
    isUnusual_ = isUnusual_ || isFortran;
    value.isDigits = false;
    return skipExponent(end);
}

void LineValues::AppendPlain(const Value& value, std::string& text) const {
    const std::string_view number = value.Text();
    const std::size_t start = text.size();
    text += number;
    if (value.isDigits) return;
    if (style_.decimal != '.')
        for (std::size_t i = 0; i < number.size(); ++i)
            if (number[i] == style_.decimal) text[start + i] = '.';
    // Of the words for what is no finite number none has a D.
    if (isUnusual_)
        if (const auto at = number.find_first_of("dD"); at != std::string_view::npos)
            text[start + at] = 'e';
}

double LineValues::Number(const Value& value) const {
    std::string text;
    AppendPlain(value, text);
    const char* const start = text.data() + (text.front() == '+' ? 1 : 0);
    double number = 0.0;
    const auto [end, error] = std::from_chars(start, text.data() + text.size(), number);
    const bool isWhole = error == std::errc() && end == text.data() + text.size();
    return isWhole ? number : std::numeric_limits<double>::quiet_NaN();
}

}  // namespace vpc
