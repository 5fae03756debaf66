#include <limits>
#include <random>

#include <gtest/gtest.h>

#include "platform/OdArray.h"
#include "platform/OdGeMatrix3d.h"
#include "platform/OdString.h"

namespace {

TEST(OdGeMatrix3d, InvertsWhateverItsPivotsAreAndWhereItCan) {
    OdGeMatrix3d matrix, singular;
    std::mt19937 random(5);
    std::uniform_real_distribution<double> entries(-10, 10);
    for (int i = 0; i < 200; ++i) {
        for (int k = 0; k < 16; ++k) matrix[k / 4][k % 4] = entries(random);
        if (i % 2 == 0) matrix[0][0] = matrix[i % 4][1] = 0;
        for (const OdGeMatrix3d& product : {matrix * matrix.inverse(), matrix.inverse() * matrix})
            for (int k = 0; k < 16; ++k)
                EXPECT_NEAR(product[k / 4][k % 4], k % 5 == 0 ? 1 : 0, 1e-8) << i;
    }
    for (const double entry :
         {0.0, std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity()}) {
        singular[0][0] = entry;
        EXPECT_EQ(singular.inverse(), OdGeMatrix3d()) << entry;
    }
}

TEST(OdString, DecodesUtf8AndTakesOtherBytesAsLatin1) {
    const std::pair<const char*, const wchar_t*> cases[] = {
        {"Gr\xC3\xB6\xC3\x9F\x65", L"Gr\u00f6\u00dfe"},
        {"\xE7\x82\xB9\xF0\x9F\x98\x80", L"\u70b9\U0001F600"},
        {"\xE4.las", L"\u00e4.las"},
        {"\xC3", L"\u00c3"},                                // cut short
        {"\xC0\xAF", L"\u00c0\u00af"},                      // longer than needed
        {"\xE0\x80\xAF", L"\u00e0\u0080\u00af"},            //
        {"\xED\xA0\x80", L"\u00ed\u00a0\u0080"},            // half of a pair
        {"\xF4\x90\x80\x80", L"\u00f4\u0090\u0080\u0080"},  // past the last character
        {nullptr, L""},
    };
    for (const auto& [bytes, text] : cases) EXPECT_STREQ(OdString(bytes).c_str(), text);
}

TEST(OdArray, SharesItsBufferUntilACopyIsChanged) {
    const OdArray<int> copy = {1, 2, 3};
    OdArray<int> changed[6] = {copy, copy, copy, copy, copy, copy};
    EXPECT_EQ(std::as_const(changed[0]).asArrayPtr(), copy.asArrayPtr());
    changed[0].append(4);
    changed[1].removeLast();
    changed[2].clear();
    for (int& item : changed[3]) item = 0;
    changed[4].asArrayPtr()[0] = 9;
    changed[5][1] = 20;
    const OdArray<int> expected[] = {{1, 2, 3, 4}, {1, 2}, {}, {0, 0, 0}, {9, 2, 3}, {1, 20, 3}};
    for (int i = 0; i < 6; ++i) EXPECT_EQ(changed[i], expected[i]) << i;
    EXPECT_EQ(copy, OdArray<int>({1, 2, 3}));
}

}  // namespace
