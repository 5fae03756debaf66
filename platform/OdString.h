#pragma once

#include <string>

/// Stand-in for the host SDK's wide string.
class OdString {
public:
    OdString() = default;
    OdString(const wchar_t* text) : text_(text == nullptr ? L"" : text) {}
    /// `text` is UTF-8, or Latin-1 where it is not valid as UTF-8.
    OdString(const char* text);

    const wchar_t* c_str() const { return text_.c_str(); }
    bool isEmpty() const { return text_.empty(); }

    /// Compares the characters' code points.
    bool operator<(const OdString& other) const { return text_ < other.text_; }
    bool operator==(const OdString&) const = default;

private:
    std::wstring text_;
};
