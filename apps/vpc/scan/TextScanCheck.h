#pragma once

#include <functional>
#include <string>

#include "vpc/scan/TextDialect.h"

namespace vpc {

class TextScanCopy;

/// What a text scan holds.
struct TextScanAccount {
    /// Lines that are a point's; in PTX those of cells without a return are among them.
    unsigned long long points = 0;
    /// Points that its counts claim and that are not there, and points beyond them.
    unsigned long long missing = 0;
    unsigned long long surplus = 0;
    /// Lines that should be a point's and are not, and what is wrong with the first of them.
    unsigned long long badLines = 0;
    std::string firstBadLine;
    /// Lines with a colour that is no whole number from 0 to 65535, and the first of them.
    unsigned long long oddColours = 0;
    unsigned long long firstOddColour = 0;
    unsigned long long wordLines = 0;
    /// Whether the library's readers take the file as it is.
    bool isPlain = true;
};

/// Reads every line of a text scan and checks it against the dialect that the first ones have.
class TextScanCheck {
public:
    struct Rules {
        /// Leave out what is missing or cannot be read, and take what is beyond a count.
        bool allowIncomplete = false;
        /// Refuse what is not plain.
        bool strict = false;
    };
    /// Called after every block of the file with the bytes read so far. It may throw.
    using Progress = std::function<void(unsigned long long bytes)>;

    /// Reads the file once. Where `copy` is given the points go there, written plainly; where it is
    /// null, reading ends with the first line that is not plain.
    ///
    /// Throws ScanFault for the first thing that the rules do not allow, and IoError.
    static TextScanAccount Run(const std::string& file, const TextDialect& dialect, Rules rules,
                               TextScanCopy* copy, const Progress& progress);
};

}  // namespace vpc
