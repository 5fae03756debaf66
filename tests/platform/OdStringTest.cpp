#include "platform/OdString.h"

#include <gtest/gtest.h>

namespace {

TEST(OdString, DecodesUtf8AndTakesOtherBytesAsLatin1) {
    const struct {
        const char* bytes;
        const wchar_t* text;
    } cases[] = {
        {"scan", L"scan"},
        {"Gr\xC3\xB6\xC3\x9F\x65", L"Gr\u00f6\u00dfe"},
        {"\xE7\x82\xB9\xF0\x9F\x98\x80", L"\u70b9\U0001F600"},
        {"\xE4.las", L"\u00e4.las"},
        {"\xC3", L"\u00c3"},                                // cut short
        {"\xC0\xAF", L"\u00c0\u00af"},                      // longer than needed
        {"\xE0\x80\xAF", L"\u00e0\u0080\u00af"},            //
        {"\xED\xA0\x80", L"\u00ed\u00a0\u0080"},            // half of a pair
        {"\xF4\x90\x80\x80", L"\u00f4\u0090\u0080\u0080"},  // past the last character
    };
    for (const auto& c : cases) EXPECT_STREQ(OdString(c.bytes).c_str(), c.text) << c.bytes;
    EXPECT_TRUE(OdString(static_cast<const char*>(nullptr)).isEmpty());
    EXPECT_TRUE(OdString(static_cast<const wchar_t*>(nullptr)) == OdString());
}

TEST(OdString, Joins) {
    OdString text = OdString(L"a") + "b";
    text += L"c";
    EXPECT_TRUE(text == L"abc");
    EXPECT_EQ(text.getLength(), 3);
    EXPECT_FALSE(text == "ab");
}

}  // namespace
