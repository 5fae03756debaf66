#include "core/util/VpcTimer.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <ctime>

namespace {

using std::chrono::microseconds;

VpcTimer::TimePoint now() {
    return std::chrono::time_point_cast<microseconds>(std::chrono::system_clock::now());
}

/// Subtracts as many whole units of `unitSeconds` from `seconds` as it holds; returns their number.
unsigned long long takeWhole(double& seconds, double unitSeconds) {
    const auto whole = static_cast<unsigned long long>(seconds / unitSeconds);
    seconds -= static_cast<double>(whole) * unitSeconds;
    return whole;
}

}  // namespace

std::unique_ptr<VpcTimer>& VpcTimer::Holder() {
    static std::unique_ptr<VpcTimer> timer;
    return timer;
}

VpcTimer* VpcTimer::Instance() {
    if (!Holder()) Holder().reset(new VpcTimer);  // NOLINT: the constructor is private
    return Holder().get();
}

void VpcTimer::Release() {
    Holder().reset();
}

void VpcTimer::Start() {
    startTime = now();
}

long long VpcTimer::Stop() {
    stopTime = now();
    const long long elapsed = (stopTime - startTime).count();
    elapsedSeconds = static_cast<double>(elapsed) / 1e6;
    return elapsed;
}

void VpcTimer::GetHoursMinutesSecondsMSeconds(unsigned long long& hours,
                                              unsigned long long& minutes,
                                              unsigned long long& seconds,
                                              unsigned long long& milliseconds) {
    // Longer than any run, and short enough for its hours to fit into 64 bits.
    constexpr double longest = 1e15;
    elapsedSeconds = elapsedSeconds > 0 ? std::min(elapsedSeconds, longest) : 0.0;
    hours = takeWhole(elapsedSeconds, 3600);
    minutes = takeWhole(elapsedSeconds, 60);
    seconds = takeWhole(elapsedSeconds, 1);
    milliseconds = static_cast<unsigned long long>(elapsedSeconds * 1000);
}

wxString VpcTimer::ElapsedTimeToString() {
    unsigned long long hours = 0;
    unsigned long long minutes = 0;
    unsigned long long seconds = 0;
    unsigned long long milliseconds = 0;
    GetHoursMinutesSecondsMSeconds(hours, minutes, seconds, milliseconds);
    std::array<char, 80> text{};
    std::snprintf(text.data(), text.size(), "%02lluh:%02llum:%02llus.%03llums", hours, minutes,
                  seconds, milliseconds);
    return wxString::FromAscii(text.data());
}

wxString VpcTimer::GetCurrentTimeAsString() {
    const TimePoint time = now();
    const std::time_t seconds = std::chrono::system_clock::to_time_t(time);
    std::tm local{};
    localtime_r(&seconds, &local);
    std::array<char, 40> date{};
    std::strftime(date.data(), date.size(), "%Y-%m-%d %H:%M:%S", &local);
    const auto inSecond = static_cast<int>(time.time_since_epoch().count() % 1'000'000);
    std::array<char, 60> text{};
    std::snprintf(text.data(), text.size(), "[%s.%03d]", date.data(), inSecond / 1000);
    return wxString::FromAscii(text.data());
}
