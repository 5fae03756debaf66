#pragma once

#include <optional>
#include <string>
#include <vector>

#include <wx/string.h>

#include "core/util/VpcDefinitions.h"

namespace vpc {

/// One thing that may make a preparing run fail.
struct PrepareFinding {
    /// Lets a caller treat some findings in its own way: ask for another folder, say, or go on
    /// although the disk seems to lack room.
    enum class Kind { Output, Scan, Log, LogNotWritable, NoFolder, NoNewFiles, NoRoom };

    Kind kind;
    /// The file or folder, as the caller named it.
    wxString file;
    /// What is wrong with it, in translated words that may follow its name: "does not exist".
    wxString problem;
    /// What the user can do: "check the name". Empty where the problem says that already.
    wxString remedy;

    /// All of it as a sentence: "'scan.las' does not exist; check the name".
    wxString Sentence() const;
};

/// What is known of scans that the caller has checked itself.
struct CheckedScans {
    VpcDataFormat format = DataFormat_Unknown;
    /// How many points they hold, or about how many.
    unsigned long long points = 0;
    /// Bytes of the copies of scans that the caller puts into the working folder.
    unsigned long long copyBytes = 0;
};

/// Looks before a preparing run for what would make it fail later: scans that are missing,
/// incomplete or of several formats, missing rights and folders, a disk without enough room.
///
/// A host may run these checks before it calls PcCorePointPrepare::preparePointData. That function
/// does not run them itself, since its own rules are milder: the first scan's extension decides on
/// the format of all, and a text scan that cannot be opened is left out, with a note.
class PrepareChecks {
public:
    /// The first five arguments are those that preparePointData is going to be given; a missing
    /// separator after the folder does no harm.
    ///
    /// \param logFile the file that VpcLogger is going to write meanwhile; empty for none
    PrepareChecks(const wxString& workingFolder, const std::vector<wxString>& inputFiles,
                  const wxString& outputFile, VpcTreeType treeType,
                  unsigned long long maxPointsPerNode, const wxString& logFile = wxString());

    /// What is wrong with a scan whatever its format is: it is missing, no regular file, not
    /// readable or empty. Nothing where it is none of these.
    [[nodiscard]] static std::optional<PrepareFinding> FaultOfFile(const wxString& scan);
    /// How many points a text scan of this size may hold; more than it does hold in practice.
    [[nodiscard]] static unsigned long long EstimatedTextPoints(unsigned long long bytes);

    /// Lets Run leave the scans alone, but for the question whether one is the output or the log.
    void TakeScansAsChecked(const CheckedScans& scans);
    /// Everything that may make the run fail, in the order output, scans, log, folders, room; for
    /// each file the first thing that is wrong with it. To find out whether it can write there, it
    /// makes an empty folder in each of the run's two folders, and the log where there is none yet,
    /// and removes them again; to find out whether room is given back there, a nameless file in the
    /// working folder. Call it once.
    [[nodiscard]] std::vector<PrepareFinding> Run();
    /// How many points the scans hold: exact for LAS, estimated from the file's size for text.
    /// Known after Run.
    unsigned long long EstimatedPoints() const { return points_; }
    /// The format of the first scan that has a known one. Known after Run.
    VpcDataFormat Format() const { return format_; }

private:
    void CheckOutput();
    void CheckScan(const std::string& scan);
    /// Whether the extension names a format, and the same one as those of the other scans.
    bool HasFormat(const std::string& scan);
    /// Whether the scan can be opened as the readers of its format do.
    bool OpensForUpdate(const std::string& scan);
    /// Adds the points of a LAS scan: as many as its header claims and it has records for.
    void CountLasPoints(const std::string& scan, unsigned long long size);
    void CheckLog();
    void CheckFolder(const std::string& folder);
    void CheckRoom();
    void RequireRoom(const std::string& folder, unsigned long long needed);
    void Tell(PrepareFinding::Kind kind, const std::string& file, const wxString& problem,
              const wxString& remedy);

    /// All names are in the system's encoding.
    std::string workingFolder_;
    std::vector<std::string> scans_;
    std::string output_;
    std::string outputFolder_;
    std::string log_;
    VpcTreeType treeType_;
    unsigned long long maxPointsPerNode_;
    VpcDataFormat format_ = DataFormat_Unknown;
    unsigned long long points_ = 0;
    unsigned long long copyBytes_ = 0;
    bool scansAreChecked_ = false;
    std::vector<PrepareFinding> findings_;
};

}  // namespace vpc
