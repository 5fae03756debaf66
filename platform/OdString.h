#pragma once

#include <string>

/// Stand-in for the host SDK's wide string.
class OdString {
public:
    OdString() = default;
    OdString(const wchar_t* text) : text_(text == nullptr ? L"" : text) {}
    /// `utf8` is UTF-8; a byte that is not is taken as the Latin-1 character of that value.
    OdString(const char* utf8);

    const wchar_t* c_str() const { return text_.c_str(); }
    bool isEmpty() const { return text_.empty(); }
    int getLength() const { return static_cast<int>(text_.size()); }

    OdString& operator+=(const OdString& tail) {
        text_ += tail.text_;
        return *this;
    }
    friend OdString operator+(OdString head, const OdString& tail) { return head += tail; }
    /// Ordered by the characters' numbers.
    bool operator<(const OdString& other) const { return text_ < other.text_; }
    bool operator==(const OdString&) const = default;

private:
    std::wstring text_;
};
