#pragma once

#include <stdexcept>

#include <wx/string.h>

namespace vpc {

/// A failure of input or output: which file, what is wrong with it, and the system's reason.
///
/// It is the one way in which the inside of the library reports such a failure. It is thrown where
/// the failure happens; the outer classes turn it into the results that their callers expect.
class IoError : public std::runtime_error {
public:
    /// \param file         the file's name
    /// \param problem      what is wrong, in translated words that may follow the name: "cannot be
    ///                     opened"
    /// \param systemReason the system's error number (errno); 0 where the system gave none, as for
    ///                     a file whose content is damaged
    IoError(const wxString& file, const wxString& problem, int systemReason = 0);

    const wxString& File() const { return file_; }
    /// What is wrong, with the system's reason, in words that may follow the file's name: "cannot
    /// be opened (Permission denied)".
    const wxString& Problem() const { return problem_; }
    /// The file and the problem, which make a sentence. what() is the same in the system's
    /// encoding.
    wxString Message() const { return file_ + " " + problem_; }
    /// The system's error number; 0 where the system gave none.
    int SystemReason() const { return systemReason_; }

private:
    wxString file_;
    wxString problem_;
    int systemReason_;
};

}  // namespace vpc
