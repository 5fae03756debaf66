#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vpc::viewer {

/// How far a preparation has come, as `vpc prepare --progress json --json` tells it. It is given
/// what the program writes, in pieces of any size. Texts are UTF-8, whatever the program writes.
class PrepareProgress {
public:
    /// What has become of the scans, as the program's last line tells it.
    struct Summary {
        unsigned long long points = 0;
        unsigned long long bytes = 0;
        double seconds = 0.0;
        std::string unit;
    };

    /// Takes what the program wrote to its standard output.
    void TakeOutput(std::string_view bytes);
    /// Takes what the program wrote to its standard error.
    void TakeErrors(std::string_view bytes);
    /// Nothing more will come: a last line counts although it does not end.
    void Finish();

    /// Of the whole run, 0 to 1.
    double Share() const { return share_; }
    /// As people read it: "sorting points".
    const std::string& Stage() const { return stage_; }
    /// Points or bytes; 0 where unknown.
    double PerSecond() const { return perSecond_; }
    bool CountsBytes() const { return countsBytes_; }
    std::optional<double> SecondsLeft() const { return secondsLeft_; }
    const std::optional<Summary>& GetSummary() const { return summary_; }
    /// What the user should know about the scans, a text each.
    const std::vector<std::string>& Warnings() const { return warnings_; }
    /// The last thing that the program said on its standard error and that was no warning; what
    /// went wrong, where it failed.
    const std::string& LastSentence() const { return lastSentence_; }

    /// Stage, rate and time left in a line: "sorting points, 3.2 M points/s, 12 s left".
    std::string Words() const;

private:
    void TakeOutputLine(const std::string& line);
    void TakeErrorLine(const std::string& line);

    std::string output_;
    std::string errors_;
    double share_ = 0.0;
    std::string stage_;
    double perSecond_ = 0.0;
    bool countsBytes_ = false;
    std::optional<double> secondsLeft_;
    std::optional<Summary> summary_;
    std::vector<std::string> warnings_;
    std::string lastSentence_;
    /// Whether lines without the program's name go on with a warning.
    bool inWarning_ = false;
};

}  // namespace vpc::viewer
