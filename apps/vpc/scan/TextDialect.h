#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/util/VpcDefinitions.h"
#include "vpc/scan/LineValues.h"
#include "vpc/scan/TextColumns.h"

namespace vpc {

/// How a text scan is written: what it is seen to be by its first lines.
struct TextDialect {
    /// Looks at the first lines of a file. Throws ScanFault where they are no scan's or can be
    /// understood in more than one way, and IoError where the file cannot be read.
    static TextDialect Of(const std::string& file);

    /// Whether a line without numbers is a comment, wherever it stands: it begins with '#', '//' or
    /// '%', or is the mark at the end of an old DOS text.
    static bool IsComment(std::string_view line);
    /// Whether a line cannot begin with a number, so that it may be a header.
    static bool IsWords(std::string_view line);

    /// Whether the library's readers take such a file as it is. Later lines may still not be plain.
    bool IsPlain() const;
    /// What is not plain about it, in words that make a list. `linesSkipped` is the number of
    /// header and comment lines.
    std::vector<std::string> Particulars(unsigned long long linesSkipped) const;

    /// PTS or PTX.
    VpcDataFormat format = DataFormat_Unknown;
    NumberStyle style;
    bool hasByteOrderMark = false;
    bool endsWithReturns = false;
    /// PTS: whether its blocks begin with their counts.
    bool hasCounts = true;
    /// Header, comment and blank lines before the first point.
    unsigned long long linesBefore = 0;
    unsigned long long blankLinesBefore = 0;
    /// PTS: the columns of its lines.
    TextColumns columns;
    bool columnsAreNamed = false;
};

}  // namespace vpc
