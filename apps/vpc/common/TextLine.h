#pragma once

#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>

namespace vpc {

/// Puts together one short line of numbers, with decimal points in any locale.
class TextLine {
public:
    /// Appends an integer, after a blank unless it is the line's first value.
    void Add(long long value) {
        Separate();
        AddDigits(value);
    }
    /// Appends `thousandths` / 1000 with three decimals.
    void AddThousandths(long long thousandths) {
        Separate();
        if (thousandths < 0) text_[used_++] = '-';
        const long long size = thousandths < 0 ? -thousandths : thousandths;
        AddDigits(size / 1000);
        text_[used_++] = '.';
        for (long long digit = 100; digit > 0; digit /= 10)
            text_[used_++] = static_cast<char>('0' + size / digit % 10);
    }
    /// Appends `value`, rounded to three decimals.
    void AddRounded(double value) {
        AddThousandths(static_cast<long long>(std::floor(value * 1000.0 + 0.5)));
    }
    /// Appends a number with `digits` significant digits, as printf's "%.<digits>g" writes it.
    void AddGeneral(double value, int digits) {
        Separate();
        const auto end = std::to_chars(text_.data() + used_, text_.data() + text_.size(), value,
                                       std::chars_format::general, digits);
        used_ = static_cast<std::size_t>(end.ptr - text_.data());
    }
    void End() { text_[used_++] = '\n'; }
    const char* Data() const { return text_.data(); }
    std::size_t Size() const { return used_; }

private:
    void Separate() {
        if (used_ > 0) text_[used_++] = ' ';
    }
    void AddDigits(long long value) {
        const auto end = std::to_chars(text_.data() + used_, text_.data() + text_.size(), value);
        used_ = static_cast<std::size_t>(end.ptr - text_.data());
    }

    std::array<char, 256> text_;  // left unset: a line is made for every point
    std::size_t used_ = 0;
};

}  // namespace vpc
