#include "tree/construct/PrepareChecks.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <system_error>
#include <utility>

#include <wx/filename.h>
#include <wx/intl.h>
#include <wx/translation.h>

#include "core/util/DisplayText.h"
#include "core/util/FileHandle.h"
#include "core/util/FileTools.h"
#include "core/util/IoError.h"
#include "core/util/ReplacementFile.h"
#include "io/FileIoFactory.h"
#include "io/LasPointCount.h"
#include "tree/construct/SpillFile.h"
#include "tree/file/PointTreeLayout.h"

namespace vpc {

namespace {

using Kind = PrepareFinding::Kind;

/// The shortest line that a point of a text scan takes in practice.
constexpr unsigned long long textBytesPerPoint = 25;
/// Bytes in the temporary file for every point of the scans, if next to none find room in memory:
/// packed, with the number of its arrival, and with a share of the gaps between pieces.
constexpr unsigned long long lasWorkBytesPerPoint = 26;
constexpr unsigned long long textWorkBytesPerPoint = 50;
/// Bytes in the result for every point of the scans: its record, to which the coarser levels add a
/// third in an octree and as much again in a kd-tree.
constexpr unsigned long long octreeBytesPerPoint = 72;
constexpr unsigned long long kdTreeBytesPerPoint = 108;
/// The bytes of a node's record with its share of the child entries, and the nodes for every full
/// leaf.
constexpr unsigned long long bytesPerNode = 800;
constexpr unsigned long long nodesPerFullLeaf = 4;
/// More than any disk has room for; keeps the sums of bytes within their type.
constexpr unsigned long long mostPoints = 1ULL << 53;

/// The system's reason for the last failure, in parentheses.
wxString reason() {
    return " (" + FileTools::FromNativePath(std::generic_category().message(errno)) + ")";
}

std::optional<struct stat> statusOf(const std::string& file) {
    struct stat status = {};
    if (stat(file.c_str(), &status) != 0) return std::nullopt;
    return status;
}

/// Whether both names lead to one file, which exists.
bool sameFile(const std::string& a, const std::string& b) {
    std::error_code ignored;
    return std::filesystem::equivalent(a, b, ignored);
}

bool opens(const std::string& file, const char* mode) {
    return FileHandle(std::fopen(file.c_str(), mode)) != nullptr;
}

/// The folder that a file is in, "." where its name has none.
std::string folderOf(const std::string& file) {
    const std::string folder = std::filesystem::path(file).parent_path().string();
    return folder.empty() ? "." : folder;
}

wxString bytesText(unsigned long long bytes) {
    return FileTools::FromNativePath(DisplayText::Bytes(bytes));
}

}  // namespace

wxString PrepareFinding::Sentence() const {
    const wxString fault = "'" + file + "' " + problem;
    return remedy.empty() ? fault : fault + "; " + remedy;
}

PrepareChecks::PrepareChecks(const wxString& workingFolder, const std::vector<wxString>& inputFiles,
                             const wxString& outputFile, VpcTreeType treeType,
                             unsigned long long maxPointsPerNode, const wxString& logFile)
    // The driver puts its files into the current folder where it is given no name.
    : workingFolder_(
          FileTools::ToNativePath(workingFolder.empty() ? wxString(".") : workingFolder)),
      output_(FileTools::ToNativePath(outputFile)),
      outputFolder_(folderOf(output_)),
      log_(FileTools::ToNativePath(logFile)),
      treeType_(treeType),
      maxPointsPerNode_(std::max(maxPointsPerNode, 1ULL)) {
    for (const wxString& file : inputFiles) scans_.push_back(FileTools::ToNativePath(file));
}

void PrepareChecks::TakeScansAsChecked(const CheckedScans& scans) {
    scansAreChecked_ = true;
    format_ = scans.format;
    points_ = scans.points;
    copyBytes_ = scans.copyBytes;
}

std::vector<PrepareFinding> PrepareChecks::Run() {
    CheckOutput();
    if (!scansAreChecked_)
        for (const std::string& scan : scans_) CheckScan(scan);
    if (!log_.empty()) CheckLog();
    CheckFolder(outputFolder_);
    if (workingFolder_ != outputFolder_) CheckFolder(workingFolder_);
    CheckRoom();
    return std::move(findings_);
}

void PrepareChecks::Tell(Kind kind, const std::string& file, const wxString& problem,
                         const wxString& remedy) {
    findings_.push_back({kind, FileTools::FromNativePath(file), problem, remedy});
}

void PrepareChecks::CheckOutput() {
    if (wxFileName(FileTools::FromNativePath(output_)).GetExt() != PointTreeLayout::extension)
        return Tell(Kind::Output, output_,
                    _("cannot be the output: tree files are named '.vpt', in small letters, "
                      "because readers look for that extension"),
                    _("name it so"));
    try {
        const wxString target = ReplacementFile::FollowLinks(FileTools::FromNativePath(output_));
        outputFolder_ = folderOf(FileTools::ToNativePath(target));
    } catch (const IoError& failure) {
        return Tell(Kind::Output, output_, failure.Problem(), _("choose another output name"));
    }
    const auto status = statusOf(output_);
    if (status && !S_ISREG(status->st_mode))
        return Tell(Kind::Output, output_, _("is there already and is no regular file"),
                    _("choose another output name"));
    const auto scan = std::find_if(scans_.begin(), scans_.end(), [&](const std::string& other) {
        return sameFile(output_, other);
    });
    if (scan != scans_.end())
        Tell(Kind::Output, output_,
             wxString::Format(_("is the same file as the scan '%s'"),
                              FileTools::FromNativePath(*scan)),
             _("choose another output name"));
}

std::optional<PrepareFinding> PrepareChecks::FaultOfFile(const wxString& scan) {
    const auto fault = [&](const wxString& problem, const wxString& remedy) {
        return PrepareFinding{Kind::Scan, scan, problem, remedy};
    };
    const std::string file = FileTools::ToNativePath(scan);
    const auto status = statusOf(file);
    if (!status) {
        const bool missing = errno == ENOENT || errno == ENOTDIR;
        const wxString why = reason();
        if (missing) return fault(_("does not exist"), _("check the name"));
        return fault(_("cannot be looked at") + why, _("check its folders' rights"));
    }
    if (!S_ISREG(status->st_mode)) return fault(_("is no regular file"), _("name scan files only"));
    if (!opens(file, "rbe")) {
        const wxString why = reason();
        return fault(_("cannot be read") + why, _("change its permissions"));
    }
    if (status->st_size == 0) return fault(_("is empty"), _("get a complete copy or leave it out"));
    return std::nullopt;
}

void PrepareChecks::CheckScan(const std::string& scan) {
    if (auto fault = FaultOfFile(FileTools::FromNativePath(scan))) {
        findings_.push_back(std::move(*fault));
        return;
    }
    if (!HasFormat(scan) || !OpensForUpdate(scan)) return;
    const auto status = statusOf(scan);
    const auto size = status ? static_cast<unsigned long long>(status->st_size) : 0;
    if (format_ == DataFormat_LAS)
        CountLasPoints(scan, size);
    else
        points_ += EstimatedTextPoints(size);
}

unsigned long long PrepareChecks::EstimatedTextPoints(unsigned long long bytes) {
    return bytes / textBytesPerPoint + 1;
}

bool PrepareChecks::HasFormat(const std::string& scan) {
    const VpcDataFormat format = FileIoFactory::GetDataFormat(FileTools::FromNativePath(scan));
    if (format == DataFormat_Unknown) {
        Tell(Kind::Scan, scan,
             _("is no scan by its extension, which must be las, pts or ptx, all small or "
               "all capital letters"),
             _("rename it or leave it out"));
        return false;
    }
    if (format_ == DataFormat_Unknown) format_ = format;
    if (format == format_) return true;
    Tell(Kind::Scan, scan,
         wxString::Format(_("is of another format than '%s'"),
                          FileTools::FromNativePath(scans_.front())),
         _("prepare scans of one format at a time"));
    return false;
}

bool PrepareChecks::OpensForUpdate(const std::string& scan) {
    if (format_ == DataFormat_LAS || opens(scan, "r+be")) return true;
    const wxString why = reason();
    Tell(Kind::Scan, scan,
         _("cannot be written") + why +
             _(", and PTS and PTX scans are opened for update though never changed"),
         _("make it writable or use a copy"));
    return false;
}

void PrepareChecks::CountLasPoints(const std::string& scan, unsigned long long size) {
    const LasPointCount points(FileTools::FromNativePath(scan), size);
    if (!points.fault.empty()) return Tell(Kind::Scan, scan, points.fault, wxString());
    if (points.claimed == 0)
        return Tell(Kind::Scan, scan, _("has a LAS header but holds no points"), _("leave it out"));
    if (points.held == 0)
        return Tell(Kind::Scan, scan,
                    wxString::Format(_("holds none of the %llu points that its header claims"),
                                     points.claimed),
                    _("get a complete copy or leave it out"));
    points_ += points.held;
}

void PrepareChecks::CheckLog() {
    const auto clashes = [&](const std::string& other) { return sameFile(log_, other); };
    if (log_ == output_ || clashes(output_) || std::any_of(scans_.begin(), scans_.end(), clashes))
        return Tell(Kind::Log, log_, _("cannot be the log, since it is a scan or the output"),
                    _("choose another name"));
    const auto status = statusOf(log_);
    if ((status && !S_ISREG(status->st_mode)) || !opens(log_, "abe"))
        return Tell(Kind::LogNotWritable, log_, _("cannot be written as the log"),
                    _("choose another name"));
    // Through a link it is the file at its end that was made.
    std::error_code ignored;
    if (!status) unlink(std::filesystem::canonical(log_, ignored).c_str());
}

void PrepareChecks::CheckFolder(const std::string& folder) {
    const auto status = statusOf(folder);
    if (!status || !S_ISDIR(status->st_mode))
        return Tell(Kind::NoFolder, folder, _("is no folder"), _("create it or name another one"));
    // The folder's rights do not say enough: its file system may be read-only, or take no files at
    // all. So try it.
    std::string probe = folder + "/vpc-probe-XXXXXX";
    if (mkdtemp(probe.data()) != nullptr) {
        rmdir(probe.c_str());
        return;
    }
    const wxString why = reason();
    Tell(Kind::NoNewFiles, folder, _("takes no new files") + why,
         _("change its rights or name another folder"));
}

void PrepareChecks::CheckRoom() {
    const unsigned long long points = std::min(points_, mostPoints);
    const unsigned long long leaves =
        std::min(points, points / maxPointsPerNode_ * nodesPerFullLeaf + 1);
    const unsigned long long result =
        points * (treeType_ == Tree_Octree ? octreeBytesPerPoint : kdTreeBytesPerPoint) +
        leaves * bytesPerNode;
    const unsigned long long work =
        points * (format_ == DataFormat_LAS ? lasWorkBytesPerPoint : textWorkBytesPerPoint);
    const auto outputStatus = statusOf(outputFolder_);
    const auto workStatus = statusOf(workingFolder_);
    if (outputStatus && workStatus && outputStatus->st_dev == workStatus->st_dev) {
        // What is in the result is given back from the temporary file, where that can be done.
        const unsigned long long kept =
            SpillFile::GivesRoomBack(workingFolder_) ? work / SpillFile::mostWaitingShare : work;
        RequireRoom(outputFolder_, result + kept + copyBytes_);
    } else {
        RequireRoom(outputFolder_, result);
        RequireRoom(workingFolder_, work + copyBytes_);
    }
}

void PrepareChecks::RequireRoom(const std::string& folder, unsigned long long needed) {
    std::error_code error;
    const auto available = std::filesystem::space(folder, error).available;
    // A file system that does not say how much room it has is no reason to refuse a run.
    if (error || available >= needed) return;
    Tell(Kind::NoRoom, folder,
         wxString::Format(_("has %s free and this run needs about %s there"), bytesText(available),
                          bytesText(needed)),
         _("make room or name other folders"));
}

}  // namespace vpc
