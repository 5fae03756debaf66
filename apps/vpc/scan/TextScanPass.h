#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "vpc/scan/LineValues.h"
#include "vpc/scan/TextDialect.h"
#include "vpc/scan/TextLines.h"
#include "vpc/scan/TextScanCheck.h"

namespace vpc {

/// One reading of a text scan from its first line to its last: what PTS and PTX have in common.
class TextScanPass {
public:
    TextScanPass(const std::string& file, const TextDialect& dialect, TextScanCheck::Rules rules,
                 TextScanCopy* copy)
        : lines_(file), values_(dialect.style), dialect_(dialect), rules_(rules), copy_(copy) {}
    TextScanPass(const TextScanPass&) = delete;
    TextScanPass& operator=(const TextScanPass&) = delete;
    virtual ~TextScanPass() = default;

    TextScanAccount Run(const TextScanCheck::Progress& progress);

protected:
    /// Takes a line of numbers, at least one.
    virtual void TakeValues() = 0;
    /// Takes note of the text's end.
    virtual void End() = 0;

    /// A block has ended for which line `claimLine` announced `claimed` points and `held` came.
    void CompareCounts(unsigned long long claimed, unsigned long long held,
                       unsigned long long claimLine);
    /// Refuses a line that should be a point's, or leaves it out.
    void RefuseLine(const std::string& why);
    /// Refuses a line of numbers that has another number of values than it should have.
    void RefuseCount(const std::string& expected);
    /// Notes something that has been understood but that the library's readers do not take.
    void NoteUnusual();
    /// Whether a value is a whole number from 0 to 65535; counts the lines where one is not.
    bool LookAtColour(const LineValues::Value& value);
    /// A line to show, and where it stands: "'1 2 x' in line 3".
    std::string ShownLine() const;

    TextLines lines_;
    LineValues values_;
    const TextDialect& dialect_;
    TextScanCheck::Rules rules_;
    /// Where the points go; null where the text is only checked.
    TextScanCopy* copy_;
    TextScanAccount account_;

private:
    void TakeLine();
    void TakeWords();

    unsigned long long badLinesCounted_ = 0;
    unsigned long long lastOddColour_ = 0;
};

}  // namespace vpc
