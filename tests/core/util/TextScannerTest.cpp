#include "core/util/TextScanner.h"

#include <array>
#include <cstdio>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "core/geometry/NumberText.h"
#include "core/util/FileHandle.h"
#include "support/LocaleGuard.h"

namespace {

vpc::FileHandle openText(const std::string& text) {
    vpc::FileHandle file(std::tmpfile());
    std::fwrite(text.data(), 1, text.size(), file.get());
    std::rewind(file.get());
    return file;
}

using Scanner = vpc::TextScanner;

/// Scans a value both ways; whether success, bits and position agree.
template <class T>
bool agrees(Scanner& ours, bool (Scanner::*scan)(T&), std::FILE* theirs, const char* format) {
    T a = 7, b = 7;
    const bool scanned = (ours.*scan)(a);
    return scanned == (std::fscanf(theirs, format, &b) == 1) &&
           std::memcmp(&a, &b, sizeof a) == 0 &&
           ours.Position() == static_cast<unsigned long long>(std::ftell(theirs));
}

/// Scans value after value, in the order d, llu and lf that `kinds` gives. A failure is stepped
/// over, as a reader of points does.
void compareWithFscanf(const std::string& text, const std::string& kinds) {
    const vpc::test::LocaleGuard locale("C");
    const vpc::FileHandle ours = openText(text), theirs = openText(text);
    Scanner scanner(ours.get());
    for (std::size_t i = 0; i < kinds.size(); ++i)
        ASSERT_TRUE(kinds[i] == 'f' ? agrees(scanner, &Scanner::ScanDouble, theirs.get(), "%lf")
                    : kinds[i] == 'd'
                        ? agrees(scanner, &Scanner::ScanInt, theirs.get(), "%d")
                        : agrees(scanner, &Scanner::ScanUnsigned, theirs.get(), "%llu"))
            << '"' << text.substr(0, 4000) << "\" " << kinds.substr(0, 9) << ' ' << i;
}

using namespace std::string_literals;

TEST(TextScanner, AgreesWithFscanfOnAwkwardText) {
    // clang-format off
    const std::vector<std::string> texts = {
        "", "+-1", "-.", ".5", "5.", "1.2.3", "1e+x", "1e+-5", "1ee5", "1e5.5", ".e5", "1e00000005",
        "1e400", "-1e-400", "1e99999999999", "0e99999999999", "4.9e-324", "2.4e-324", "2.5e-324",
        "2.2250738585072011e-308", "1.7976931348623157e308", "1.7976931348623159e308",
        "9007199254740993", "9007199254740992.5", "1e22", "1e23",
        "18446744073709551615", "18446744073709551616", "-18446744073709551615",
        "-18446744073709551616", "-99999999999999999999999", "9223372036854775808",
        "-9223372036854775809", "2147483648", "-2147483649", "0x", "0X1.8P3", "0x1p+", "0x1p-3x",
        "0xg", "-0xp1", "0x.p1", "0x1e5", "00x1", "-0.0", "0e", "NaN", "-nan", "nan(12)", "na",
        "nab", "-INF", "Infinity9", "infi", "infinitx", "infx", "in", "i", "-i", "-x", "1,5", "1_0",
        "1\t2\v3\f4\r5", "\xef\xbb\xbf" "3", "\xc2\xa0" "4", "1\xff", "1d5", "1\0002"s, "\0"s,
        "nan\0 1"s, "1e\0005"s, "0x\0001"s, std::string(400, '1'), std::string(3000, ' ') + "7",
        "0." + std::string(900, '0') + "1", "1" + std::string(700, '0') + "e-700",
        std::string(200, '9') + "." + std::string(200, '9') + "e-190"};
    // clang-format on
    for (const std::string& text : texts)
        for (const char* kinds : {"fffff", "ddddd", "uuuuu", "fdufd", "udf"}) {
            compareWithFscanf(text, kinds);
            compareWithFscanf("  " + text + " 8", kinds);
            if (HasFatalFailure()) return;
        }
}

TEST(TextScanner, AgreesWithFscanfOnRandomText) {
    std::mt19937_64 random(20240611);
    const std::string alphabet = "0123456789012345678900..--++eExXpPnaifty \t\nA\0,"s;
    const char* const kinds[] = {"ffff", "dddd", "uuuu", "fdfu"};
    for (int round = 0; round < 30000 && !testing::Test::HasFatalFailure(); ++round) {
        std::string text;
        for (auto left = random() % 24; left > 0; --left)
            text += alphabet[random() % alphabet.size()];
        compareWithFscanf(text, kinds[random() % 4]);
    }
}

/// Random numbers as scanners write them, many to a file, so that they also cross the borders of
/// the scanner's blocks.
TEST(TextScanner, AgreesWithFscanfOnNumbersAcrossBlocks) {
    std::mt19937_64 random(7);
    std::string text, kinds = "ff";
    while (text.size() < 5'000'000) {
        const auto raw = static_cast<double>(random() >> (random() % 64));
        const auto digits = static_cast<int>(random() % 21);
        text += random() % 8 == 0 ? vpc::generalText(raw * 1e-300, digits)
                                  : vpc::fixedText((raw - 9e18) / 1e13, digits);
        text += random() % 7 == 0 ? "\r\n" : " ";
        kinds += 'f';
    }
    compareWithFscanf(text, kinds);
}

/// A number, a word or a run of white space on a block's border is read as a whole.
TEST(TextScanner, AgreesWithFscanfAtTheBorderOfABlock) {
    constexpr std::size_t border = std::size_t{1} << 20;
    for (const char* const item : {"-1234.5e-3", "0x1.8p3", "infinity", "123456789", "1e+x"})
        for (std::size_t before = 0; before <= 11; ++before)
            compareWithFscanf(std::string(border - before, ' ') + item + " 5 6", "ffd");
}

}  // namespace
