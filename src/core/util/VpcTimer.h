#pragma once

#include <chrono>
#include <memory>

#include <wx/string.h>

/// The process-wide stopwatch. One thread at a time.
class VpcTimer {
public:
    using TimePoint = std::chrono::time_point<std::chrono::system_clock, std::chrono::microseconds>;

    TimePoint startTime;
    TimePoint stopTime;
    /// The last measurement in seconds. Formatting it uses it up.
    double elapsedSeconds = 0.0;

    /// The one timer. The first call creates it, and so does the first one after Release. Callers
    /// do not delete it.
    static VpcTimer* Instance();
    /// Destroys the timer.
    static void Release();

    void Start();
    /// Ends the measurement; returns it in microseconds.
    long long Stop();

    /// Splits elapsedSeconds and leaves only the fraction of a second in it: a measurement is
    /// formatted once, after its Stop. If the clock was set back in between, all four are zero.
    void GetHoursMinutesSecondsMSeconds(unsigned long long& hours, unsigned long long& minutes,
                                        unsigned long long& seconds,
                                        unsigned long long& milliseconds);
    /// Formats elapsedSeconds as "00h:03m:07s.250ms" and uses it up in the same way.
    wxString ElapsedTimeToString();

    /// The local time as "[2024-03-05 14:07:09.042]".
    static wxString GetCurrentTimeAsString();

private:
    VpcTimer() = default;
    static std::unique_ptr<VpcTimer>& Holder();
};
