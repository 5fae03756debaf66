#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace vpc {

/// How a text writes several numbers in a line.
struct NumberStyle {
    /// What stands between two numbers, besides blanks and tabs; a blank where these suffice.
    char separator = ' ';
    char decimal = '.';

    bool IsPlain() const { return separator == ' ' && decimal == '.'; }
};

/// The numbers of one line of text.
class LineValues {
public:
    /// More columns than any scan has.
    static constexpr std::size_t most = 100;

    struct Value {
        const char* begin = nullptr;
        const char* end = nullptr;
        /// Whether it is digits and nothing else.
        bool isDigits = false;

        std::string_view Text() const { return {begin, static_cast<std::size_t>(end - begin)}; }
    };

    explicit LineValues(NumberStyle style) : style_(style) {}

    /// Finds the numbers in a line of TextLines; the line must stay while they are used. False
    /// where something in it is no number: Place then tells where that begins.
    ///
    /// Numbers are decimal, with or without an exponent, and the words nan, inf and infinity.
    bool Read(std::string_view line);
    std::size_t Count() const { return count_; }
    const Value& operator[](std::size_t index) const { return values_[index]; }
    const char* Place() const { return place_; }
    /// Whether the line, apart from its style, has something that readers of plain text do not
    /// take: an exponent that begins with D, or a separator at its end.
    bool IsUnusual() const { return isUnusual_; }

    /// Appends a number as plain text has it: with a decimal point, and E for the exponent.
    void AppendPlain(const Value& value, std::string& text) const;
    /// The number as a double.
    double Number(const Value& value) const;

private:
    const char* SkipNumber(const char* p, Value& value);

    NumberStyle style_;
    std::array<Value, most> values_{};
    std::size_t count_ = 0;
    const char* place_ = nullptr;
    bool isUnusual_ = false;
};

}  // namespace vpc
