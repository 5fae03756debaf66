#include "viewer/panels/Text.h"

#include <array>
#include <charconv>

namespace vpc::viewer {

std::string toUtf8(const wxString& text) {
    const wxScopedCharBuffer bytes = text.utf8_str();
    return {bytes.data(), bytes.length()};
}

wxString fromUtf8(const std::string& text) {
    const wxString read = wxString::FromUTF8(text.data(), text.size());
    if (read.empty() && !text.empty()) return {text.c_str(), wxConvISO8859_1};
    return read;
}

std::string linesOf(const std::vector<std::string>& sentences) {
    std::string lines;
    for (const std::string& sentence : sentences) {
        if (sentence.empty()) continue;
        if (!lines.empty()) lines += '\n';
        lines += sentence;
    }
    return lines;
}

wxString grouped(unsigned long long count) {
    wxString digits = wxString::Format("%llu", count);
    for (std::size_t place = digits.length(); place > 3; place -= 3)
        digits.insert(place - 3, wxString(wxUniChar(0x202F)));
    return digits;
}

wxString fixed(double value, int digits) {
    std::array<char, 400> text{};
    const auto [end, error] = std::to_chars(text.data(), text.data() + text.size(), value,
                                            std::chars_format::fixed, digits);
    return error == std::errc() ? wxString(text.data(), static_cast<std::size_t>(end - text.data()))
                                : wxString();
}

}  // namespace vpc::viewer
