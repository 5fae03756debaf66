#include "io/FileIoFactory.h"

#include <algorithm>
#include <exception>

#include <wx/filename.h>
#include <wx/log.h>
#include <wx/translation.h>

#include "core/util/FileTools.h"
#include "core/util/IoError.h"
#include "core/util/LineOfFile.h"
#include "io/LasIO.h"
#include "io/PtsIO.h"
#include "io/PtxIO.h"

namespace {

void appendLine(wxString& text, const wxString& line) {
    if (line.empty()) return;
    if (!text.empty()) text += '\n';
    text += line;
}

/// The points that the headers of LAS files claim, which are known before the files are read.
/// Claims that cannot be true are left out.
unsigned long long pointsInHeaders(const std::vector<wxString>& files, VpcDataFormat format) {
    if (format != DataFormat_LAS) return 0;
    constexpr unsigned long long believable = 1ULL << 48;
    LasIO reader(0);
    unsigned long long points = 0;
    for (const wxString& file : files)
        if (reader.readHeader(file, true) && reader.numberOfPoints < believable)
            points += reader.numberOfPoints;
    return points;
}

/// One pass over every point of a list of files.
class BoundingBoxPass {
public:
    BoundingBoxPass(FileParentIO& fileReader, VpcDataFormat format,
                    VpcBoundingBoxAxisAligned& commonBox, const ScanProgress& observer,
                    unsigned long long pointsKnown)
        : reader_(fileReader),
          format_(format),
          box_(commonBox),
          progress_(observer),
          pointsKnown_(pointsKnown) {}

    /// False when the file cannot be read or the observer asks to stop.
    [[nodiscard]] bool Read(const wxString& file);

    ScanSummary summary;
    wxString failure;
    wxString warnings;

private:
    [[nodiscard]] bool CountIsPossible(const wxString& file);
    /// Asks the observer whether to go on.
    [[nodiscard]] bool ReportProgress();
    void AddToBox();
    /// Adds the account of the file that was read, and returns what it says.
    wxString AddAccount(unsigned long long delivered);

    FileParentIO& reader_;
    VpcDataFormat format_;
    VpcBoundingBoxAxisAligned& box_;
    const ScanProgress& progress_;
    unsigned long long pointsKnown_;
    unsigned long long points_ = 0;
    bool hasBox_ = false;
    bool stopped_ = false;
};

bool BoundingBoxPass::Read(const wxString& file) {
    if (reader_.initializeRead(file) == nullptr) {
        failure = reader_.errorMessage;
        return false;
    }
    unsigned long long delivered = 0;
    bool goesOn = CountIsPossible(file);
    while (goesOn && reader_.pointsRemaining != 0) {
        const auto records = reader_.nextRecordBatch();
        const unsigned long long n = records ? records->count : reader_.nextPointBatch();
        delivered += n;
        points_ += n;
        goesOn = CountIsPossible(file) && ReportProgress();
    }
    reader_.closeRead();
    if (stopped_) return false;
    const wxString account = AddAccount(delivered);
    // What else there is to say of a count that cannot be true may tell why it was taken for one.
    appendLine(failure.empty() ? warnings : failure, account);
    if (!goesOn || stopped_) return false;
    if (delivered != 0 && reader_.HasExtent()) AddToBox();
    return true;
}

bool BoundingBoxPass::CountIsPossible(const wxString& file) {
    if (reader_.impossibleCount == 0) return true;
    failure = wxString::Format(
        wxGetTranslation("%s: the point count %llu cannot be true, the file has fewer bytes"), file,
        reader_.impossibleCount);
    return false;
}

bool BoundingBoxPass::ReportProgress() {
    if (progress_ && !progress_(points_, std::max(pointsKnown_, points_ + reader_.pointsRemaining)))
        stopped_ = true;
    return !stopped_;
}

wxString BoundingBoxPass::AddAccount(unsigned long long delivered) {
    ScanAccount account = reader_.Account();
    account.format = format_;
    account.points = delivered;
    for (ScanFault& fault : account.faults) {
        if (fault.line == 0) {
            const vpc::LineOfFile line = vpc::LineOfFile::At(account.file, fault.position);
            fault.line = line.number;
            fault.text = line.text;
        }
        if (fault.kind == ScanFault::Kind::UnreadLines)
            account.unreadLines = vpc::LineOfFile::CountFrom(account.file, fault.position,
                                                             [this] { return ReportProgress(); });
    }
    account.Describe();
    wxString text;
    for (const wxString& sentence : account.sentences) appendLine(text, sentence);
    summary.Add(account);
    return text;
}

void BoundingBoxPass::AddToBox() {
    const auto& low = reader_.extentMin;
    const auto& high = reader_.extentMax;
    VpcBoundingBoxAxisAligned fileBox;
    fileBox.SetNewBoundaries(low.x, low.y, low.z, high.x, high.y, high.z);
    box_ = hasBox_ ? box_.MergeWith(fileBox) : fileBox;
    hasBox_ = true;
}

}  // namespace

VpcDataFormat FileIoFactory::GetDataFormat(const wxString& fileName) {
    const wxString extension = wxFileName(fileName).GetExt();
    if (extension == "las" || extension == "LAS") return DataFormat_LAS;
    if (extension == "ptx" || extension == "PTX") return DataFormat_PTX;
    if (extension == "pts" || extension == "PTS") return DataFormat_PTS;
    return DataFormat_Unknown;
}

std::unique_ptr<FileParentIO> FileIoFactory::Create(VpcDataFormat format,
                                                    unsigned long long batchCapacity) {
    switch (format) {
        case DataFormat_LAS:
            return std::make_unique<LasIO>(batchCapacity);
        case DataFormat_PTS:
            return std::make_unique<PtsIO>(batchCapacity);
        case DataFormat_PTX:
            return std::make_unique<PtxIO>(batchCapacity);
        default:
            return nullptr;
    }
}

bool FileIoFactory::DetermineIs16bitColor(const std::vector<wxString>& files, VpcDataFormat format,
                                          wxString& /*message*/, bool openedBefore) {
    const wxLogNull noPopUps;
    const auto reader = Create(format, defaultBatchCapacity);
    if (reader == nullptr || files.empty()) return false;
    const bool valid = reader->initializeRead(files.front()) != nullptr;
    if (openedBefore && !reader->opened)
        throw vpc::IoError(files.front(), wxGetTranslation("can no longer be opened"),
                           reader->openError);
    if (!valid) return false;
    reader->nextPointBatch();
    reader->closeRead();
    return (reader->maxRed | reader->maxGreen | reader->maxBlue) >= 256;
}

bool FileIoFactory::DetermineMultipleBoundingBox(const std::vector<wxString>& files,
                                                 VpcDataFormat format,
                                                 VpcBoundingBoxAxisAligned& box, wxString& message,
                                                 ScanSummary* summary,
                                                 const ScanProgress& progress) {
    const wxLogNull noPopUps;
    try {
        const auto reader = Create(format, defaultBatchCapacity);
        if (reader == nullptr) return false;
        BoundingBoxPass pass(*reader, format, box, progress,
                             progress ? pointsInHeaders(files, format) : 0);
        const bool done = std::all_of(files.begin(), files.end(),
                                      [&](const wxString& file) { return pass.Read(file); });
        if (summary != nullptr) *summary = pass.summary;
        const wxString& text = done ? pass.warnings : pass.failure;
        if (!text.empty()) message = text;
        return done;
    } catch (const std::exception& error) {
        message = FileTools::FromNativePath(error.what());
        return false;
    } catch (...) {
        message = wxGetTranslation("The scans cannot be measured, for an unknown reason");
        return false;
    }
}
