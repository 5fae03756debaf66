#pragma once

#include <fstream>
#include <string>
#include <string_view>

#include <wx/string.h>

namespace vpc {

/// Writes a text file of numbers, with a decimal point whatever the process locale is.
///
/// The text goes to the file in large pieces and is complete when the writer is gone. A file that
/// cannot be opened or written swallows it silently.
class TextFileWriter {
public:
    /// Creates the file, or empties the one that is there.
    explicit TextFileWriter(const wxString& path);
    TextFileWriter(const TextFileWriter&) = delete;
    TextFileWriter& operator=(const TextFileWriter&) = delete;
    ~TextFileWriter();

    TextFileWriter& operator<<(std::string_view text);
    /// In decimal.
    TextFileWriter& operator<<(unsigned long long number);
    /// With nine significant digits, the shorter of fixed and scientific notation.
    TextFileWriter& operator<<(double number);

private:
    std::ofstream file_;
    std::string text_;
};

}  // namespace vpc
