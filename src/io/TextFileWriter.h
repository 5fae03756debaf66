#pragma once

#include <string>
#include <string_view>

#include <wx/string.h>

#include "core/util/FileHandle.h"
#include "core/util/IoError.h"

namespace vpc {

/// Writes a text file of numbers, with a decimal point whatever the process locale is.
///
/// The text goes to the file in large pieces and is complete when Close has returned. What cannot
/// be opened or written throws IoError.
class TextFileWriter {
public:
    /// Creates the file, or empties the one that is there.
    explicit TextFileWriter(const wxString& path);

    TextFileWriter& operator<<(std::string_view text);
    /// In decimal.
    TextFileWriter& operator<<(unsigned long long number);
    /// With nine significant digits, the shorter of fixed and scientific notation.
    TextFileWriter& operator<<(double number);

    /// Writes what is left and closes the file.
    void Close();

private:
    void Flush();
    [[noreturn]] void Fail() const;

    wxString path_;
    FileHandle file_;
    std::string text_;
};

/// Lets `write` write a file for whose sake nothing may fail, such as one for diagnosis: what
/// cannot be written is left out.
/// \return whether the whole file was written
template <class Write>
bool writeBestEffort(const wxString& path, const Write& write) {
    try {
        TextFileWriter file(path);
        write(file);
        file.Close();
        return true;
    } catch (const IoError&) {
        return false;
    }
}

}  // namespace vpc
