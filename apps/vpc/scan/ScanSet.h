#pragma once

#include <functional>
#include <string>
#include <vector>

#include <wx/string.h>

#include "tree/construct/PrepareChecks.h"
#include "vpc/scan/ScanFile.h"

namespace vpc {

/// The scans of one run: looks at them, checks them, and settles which of them are read.
class ScanSet {
public:
    struct Rules {
        TextScanCheck::Rules text;
        /// Leave out scans that cannot be used.
        bool skipBad = false;
    };
    /// Called again and again while texts are read, with the bytes read so far and those of all. It
    /// may throw to end the run.
    using Progress = std::function<void(unsigned long long done, unsigned long long inAll)>;

    /// Looks at the beginning of every file.
    ScanSet(const std::vector<std::string>& files, Rules rules);

    CheckedScans Checked() const;
    /// The names that the user knows; after Settle of those scans only that are read.
    std::vector<std::string> Names() const;
    /// Reads every text to its end. What the library cannot take as it is gets a link or a copy in
    /// `workFolder`, which ends with a separator. Throws CommandError where these cannot be made.
    void Check(const std::string& workFolder, const Progress& progress);
    /// Leaves out the scans with faults. Throws CommandError, which names them all and ends with
    /// `unchanged`, where there are any that the rules do not allow to leave out, or no others.
    void Settle(const std::string& unchanged);

    /// What the library is to read, in the order of the scans.
    std::vector<wxString> Sources() const;
    /// A message of the library with the users' names in the place of links and copies.
    wxString InUsersNames(wxString message) const;
    std::vector<std::string> Notes() const;
    std::vector<std::string> Warnings() const;

private:
    void RequireOneFormat();
    bool MayLeaveOut(const ScanFault& fault) const;
    [[noreturn]] void Refuse(const std::string& unchanged) const;
    std::string Advice() const;

    Rules rules_;
    std::vector<ScanFile> scans_;
    std::vector<std::string> leftOut_;
};

}  // namespace vpc
