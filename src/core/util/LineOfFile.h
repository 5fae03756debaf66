#pragma once

#include <functional>

#include <wx/string.h>

namespace vpc {

/// A line of a text file. Lines end as FileTools::CountTokensOnLine takes them to end.
struct LineOfFile {
    /// The line on which the text goes on at or behind a position, counted in bytes from the start
    /// of the file: white space is passed over. The last line where there is nothing else. Reads
    /// the file from its start, so it is for telling of a fault and not for every line.
    static LineOfFile At(const wxString& file, unsigned long long position);
    /// How many lines that are not blank there are from a position on. Asks `goesOn` now and then
    /// whether to count on.
    static unsigned long long CountFrom(const wxString& file, unsigned long long position,
                                        const std::function<bool()>& goesOn);

    /// From 1.
    unsigned long long number = 1;
    /// At most its first 60 bytes, as people can read them; then "..." stands for the rest.
    wxString text;
};

}  // namespace vpc
