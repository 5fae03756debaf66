#include <clocale>
#include <locale>
#include <stdexcept>

#include <gtest/gtest.h>

namespace {

/// Runs the tests in the locale of the environment, as a host would, so that the whole suite can
/// be run again where numbers have a decimal comma.
void adoptEnvironmentLocale() {
    std::setlocale(LC_ALL, "");
    try {
        std::locale::global(std::locale(""));
    } catch (const std::runtime_error&) {
        // The environment names a locale that is not installed: stay with the classic one.
    }
    // The system's reasons stay in the language in which the tests expect them.
    std::setlocale(LC_MESSAGES, "C");
}

}  // namespace

int main(int argc, char** argv) {
    adoptEnvironmentLocale();
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
