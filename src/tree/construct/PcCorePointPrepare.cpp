#include "tree/construct/PcCorePointPrepare.h"

#include <algorithm>
#include <exception>
#include <memory>
#include <stdexcept>

#include <wx/intl.h>
#include <wx/translation.h>

#include "core/geometry/VpcBoundingBoxAxisAligned.h"
#include "core/geometry/VpcNumMathTools.h"
#include "core/util/FileTools.h"
#include "core/util/VpcTimer.h"
#include "io/FileIoFactory.h"
#include "io/FileParentIO.h"
#include "tree/construct/PrepareCancelled.h"
#include "tree/construct/PrepareObserver.h"
#include "tree/construct/RootMargins.h"
#include "tree/construct/VpcConstructTree.h"

namespace {

/// Buffers of more points go to disk after every batch.
constexpr unsigned long long flushThreshold = 100;

/// The observer of a run that nobody watches.
class Unobserved final : public PrepareObserver {
public:
    bool onProgress(const PrepareProgress&) override { return true; }
};

/// One preprocessing run.
class PrepareRun {
public:
    PrepareRun(const std::vector<wxString>& inputFiles, PrepareObserver& observer)
        : inputFiles_(inputFiles), observer_(observer) {}

    /// Turns every exception into a failed result.
    TreePrepareResult Run(unsigned long long headerValue, const wxString& workingFolder,
                          const wxString& outputFile, VpcTreeType treeType,
                          unsigned long long maxPointsPerNode, unsigned long long maxLevel,
                          unsigned long long pointMemory);

private:
    TreePrepareResult Prepare(unsigned long long headerValue, const wxString& workingFolder,
                              const wxString& outputFile, VpcTreeType treeType,
                              unsigned long long maxPointsPerNode, unsigned long long maxLevel,
                              unsigned long long pointMemory);
    /// Reads all scans for their bounding box. False leaves the reason in message_.
    [[nodiscard]] bool MeasureScans();
    /// Reads all scans into the tree.
    void AddScans(VpcConstructTree& tree);
    void AddScan(FileParentIO& reader, std::size_t index, VpcConstructTree& tree);
    /// Adds the reader's next points, and returns how many it has read.
    unsigned long long AddBatch(FileParentIO& reader, VpcConstructTree& tree);
    /// Adds the points of a batch without those whose coordinates are not finite or out of bounds.
    void AddFinitePoints(const VpcPoint3D* points, unsigned long long count,
                         VpcConstructTree& tree);
    void NoteLostPoints(const VpcConstructTree& tree);
    void AddNote(const wxString& note);
    /// The problem and, in the lines after it, the notes so far.
    wxString WithNotes(wxString problem) const;
    void Report(PrepareStage stage, unsigned long long pointsDone, unsigned long long points);

    const std::vector<wxString>& inputFiles_;
    PrepareObserver& observer_;
    VpcDataFormat format_ = DataFormat_Unknown;
    VpcBoundingBoxAxisAligned box_;
    ScanSummary summary_;
    unsigned long long pointsRead_ = 0;
    wxString message_;
};

TreePrepareResult failure(const wxString& message) {
    return {false, message, wxString()};
}

TreePrepareResult PrepareRun::Run(unsigned long long headerValue, const wxString& workingFolder,
                                  const wxString& outputFile, VpcTreeType treeType,
                                  unsigned long long maxPointsPerNode, unsigned long long maxLevel,
                                  unsigned long long pointMemory) {
    try {
        return Prepare(headerValue, workingFolder, outputFile, treeType, maxPointsPerNode, maxLevel,
                       pointMemory);
    } catch (const std::exception& e) {
        return failure(WithNotes(_("EXCEPTION in point cloud preprocessing: ") +
                                 FileTools::FromNativePath(e.what())));
    } catch (const vpc::PrepareCancelled&) {
        return failure(_("Point cloud preprocessing was cancelled"));
    } catch (...) {
        return failure(WithNotes(_("UNCAUGHT EXCEPTION in point cloud preprocessing ")));
    }
}

TreePrepareResult PrepareRun::Prepare(unsigned long long headerValue, const wxString& workingFolder,
                                      const wxString& outputFile, VpcTreeType treeType,
                                      unsigned long long maxPointsPerNode,
                                      unsigned long long maxLevel, unsigned long long pointMemory) {
    if (inputFiles_.empty()) return failure(_("Point cloud list of input files is empty..."));
    VpcTimer::Instance()->Start();
    // The first file decides for all of them.
    format_ = FileIoFactory::GetDataFormat(inputFiles_.front());
    if (format_ == DataFormat_Unknown)
        return failure(
            _("No valid input files (*.las, *.pts or *.ptx), so not able to preprocess "
              "point cloud"));
    if (!MeasureScans()) return failure(message_);
    const bool is16bitColor = FileIoFactory::DetermineIs16bitColor(inputFiles_, format_, message_,
                                                                   summary_.firstFileOpened);

    VpcConstructTree tree(workingFolder, treeType, maxPointsPerNode, maxLevel, is16bitColor,
                          pointMemory);
    tree.setSubsampleType(Subsample_Random, false);
    tree.InitializeRootNode(box_);
    AddScans(tree);
    NoteLostPoints(tree);

    Report(PrepareStage::BuildLevels, 0, 0);
    tree.SetFinishProgress([this](unsigned long long done, unsigned long long points) {
        Report(PrepareStage::BuildLevels, done, points);
    });
    if (!tree.FinishAddData()) {
        AddNote(tree.FailureReason());
        return failure(WithNotes(_("ERROR: FinishAddData() failed!!")));
    }
    Report(PrepareStage::WriteFile, 0, tree.PointsAdded());
    tree.SetProgress([this](unsigned long long done, unsigned long long points) {
        Report(PrepareStage::WriteFile, done, points);
    });
    const bool written = tree.CreateDiskTreeFile(outputFile, headerValue);
    VpcTimer::Instance()->Stop();
    if (!written) message_ = WithNotes(tree.FailureReason());
    return {written, message_, VpcTimer::Instance()->ElapsedTimeToString()};
}

bool PrepareRun::MeasureScans() {
    const auto progress = [this](unsigned long long done, unsigned long long points) {
        return observer_.onProgress({PrepareStage::MeasureScans, done, points});
    };
    bool stopped = false;
    const bool measured = FileIoFactory::DetermineMultipleBoundingBox(
        inputFiles_, format_, box_, message_, &summary_,
        [&](unsigned long long done, unsigned long long points) {
            stopped = !progress(done, points);
            return !stopped;
        });
    if (stopped || (measured && !observer_.onScansMeasured(summary_, message_)))
        throw vpc::PrepareCancelled();
    // An empty box has no sides: there are no points, which shows when the tree is finished.
    if (measured && !box_.sortedSides.empty()) box_.AddMargin(vpc::measuredBoxMargin(box_));
    return measured;
}

void PrepareRun::AddScans(VpcConstructTree& tree) {
    const std::unique_ptr<FileParentIO> reader(
        FileIoFactory::Create(format_, FileIoFactory::defaultBatchCapacity));
    for (std::size_t i = 0; i < inputFiles_.size(); ++i) AddScan(*reader, i, tree);
    // They differ when a scan has changed since it was measured, or can no longer be opened.
    if (pointsRead_ != summary_.points)
        throw std::runtime_error(FileTools::ToNativePath(wxString::Format(
            _("the scans gave %llu points at first and %llu when they were read again; nothing may "
              "change them meanwhile"),
            summary_.points, pointsRead_)));
}

void PrepareRun::AddScan(FileParentIO& reader, std::size_t index, VpcConstructTree& tree) {
    reader.scanIndex = static_cast<int>(index);
    // A scan that fails here has no points remaining, which shows when the points are counted.
    if (reader.initializeRead(inputFiles_[index]) == nullptr) AddNote(reader.errorMessage);
    tree.BeginScan(reader.grid);
    while (reader.pointsRemaining != 0) {
        const unsigned long long count = AddBatch(reader, tree);
        tree.FlushBuffersToDisk(flushThreshold);
        pointsRead_ += count;
        Report(PrepareStage::AddPoints, pointsRead_, summary_.points);
    }
    reader.closeRead();
    // Some readers restart their maxima with every scan; the file holds those of all scans.
    tree.maxRed = std::max<unsigned short>(tree.maxRed, reader.maxRed);
    tree.maxGreen = std::max<unsigned short>(tree.maxGreen, reader.maxGreen);
    tree.maxBlue = std::max<unsigned short>(tree.maxBlue, reader.maxBlue);
    tree.maxIntensity = std::max(tree.maxIntensity, reader.maxIntensity);
}

unsigned long long PrepareRun::AddBatch(FileParentIO& reader, VpcConstructTree& tree) {
    if (const auto records = reader.nextRecordBatch()) {
        tree.AddRecords(*records);
        return records->count;
    }
    const unsigned long long nonFiniteBefore = reader.nonFinitePoints;
    const unsigned long long count = reader.nextPointBatch();
    if (reader.nonFinitePoints == nonFiniteBefore)
        tree.AddPoints(reader.pointBuffer, count);
    else
        AddFinitePoints(reader.pointBuffer, count, tree);
    return count;
}

void PrepareRun::AddFinitePoints(const VpcPoint3D* points, unsigned long long count,
                                 VpcConstructTree& tree) {
    const auto isFinite = [](const VpcPoint3D& p) {
        return VpcNumMathTools::AreCoordinates(p.x, p.y, p.z);
    };
    const VpcPoint3D* const end = points + count;
    for (const VpcPoint3D* next = points; next != end;) {
        const VpcPoint3D* const first = std::find_if(next, end, isFinite);
        next = std::find_if_not(first, end, isFinite);
        tree.AddPoints(first, static_cast<unsigned long long>(next - first));
    }
}

void PrepareRun::NoteLostPoints(const VpcConstructTree& tree) {
    if (tree.UntakenPoints() != 0)
        AddNote(wxString::Format(_("%llu points lay in no node of the tree and were left out"),
                                 tree.UntakenPoints()));
}

void PrepareRun::AddNote(const wxString& note) {
    if (!message_.empty() && !note.empty()) message_ += "\n";
    message_ += note;
}

wxString PrepareRun::WithNotes(wxString problem) const {
    if (!message_.empty()) problem += "\n";
    return problem + message_;
}

void PrepareRun::Report(PrepareStage stage, unsigned long long pointsDone,
                        unsigned long long points) {
    if (!observer_.onProgress({stage, pointsDone, points})) throw vpc::PrepareCancelled();
}

}  // namespace

TreePrepareResult PcCorePointPrepare::preparePointData(unsigned long long headerValue,
                                                       const wxString& workingFolder,
                                                       const std::vector<wxString>& inputFiles,
                                                       wxString outputFile, VpcTreeType treeType,
                                                       unsigned long long maxPointsPerNode,
                                                       unsigned long long maxLevel) {
    Unobserved nobody;
    return preparePointData(headerValue, workingFolder, inputFiles, outputFile, treeType,
                            maxPointsPerNode, maxLevel, nobody);
}

TreePrepareResult PcCorePointPrepare::preparePointData(
    unsigned long long headerValue, const wxString& workingFolder,
    const std::vector<wxString>& inputFiles, wxString outputFile, VpcTreeType treeType,
    unsigned long long maxPointsPerNode, unsigned long long maxLevel, PrepareObserver& observer,
    unsigned long long pointMemory) {
    return PrepareRun(inputFiles, observer)
        .Run(headerValue, workingFolder, outputFile, treeType, maxPointsPerNode, maxLevel,
             pointMemory);
}
