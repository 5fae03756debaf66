#include "PrepareChecks.h"

#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <limits>
#include <optional>
#include <system_error>

#include <wx/filename.h>

#include "CommandError.h"
#include "DisplayText.h"
#include "core/util/FileHandle.h"
#include "core/util/FileTools.h"
#include "io/FileIoFactory.h"
#include "io/LasIO.h"
#include "tree/file/PointTreeLayout.h"

namespace vpc {

namespace {

/// Shortest line that a point of a text scan takes in practice.
constexpr unsigned long long textBytesPerPoint = 25;
/// Bytes on disk for every point of the scans: its record in a temporary file, and its records
/// in the result, where the coarser levels of an octree add a third and those of a kd-tree as
/// much again.
constexpr unsigned long long workBytesPerPoint = 54;
constexpr unsigned long long octreeBytesPerPoint = 72;
constexpr unsigned long long kdTreeBytesPerPoint = 108;
/// A node's record and its share of the child entries, and nodes for every full leaf.
constexpr unsigned long long bytesPerNode = 800;
constexpr unsigned long long nodesPerFullLeaf = 4;

std::string reason() {
    return std::generic_category().message(errno);
}

[[noreturn]] void refuse(const std::string& file, const std::string& why) {
    throw CommandError("'" + file + "' " + why);
}

std::optional<struct stat> statusOf(const std::string& file) {
    struct stat status = {};
    if (stat(file.c_str(), &status) != 0) return std::nullopt;
    return status;
}

bool sameFile(const std::string& a, const std::string& b) {
    const auto statusA = statusOf(a);
    const auto statusB = statusOf(b);
    if (!statusA || !statusB) return false;
    return statusA->st_dev == statusB->st_dev && statusA->st_ino == statusB->st_ino;
}

bool opens(const std::string& file, const char* mode) {
    return FileHandle(std::fopen(file.c_str(), mode)) != nullptr;
}

/// The points of a LAS scan: those that its header claims and that its records bear out.
unsigned long long lasPoints(const std::string& scan, unsigned long long size) {
    LasIO reader(1);
    if (!reader.readHeader(FileTools::FromNativePath(scan), true)) {
        wxString message = reader.errorMessage;
        message.Trim(true).Trim(false);
        refuse(scan, "cannot be used: " + FileTools::ToNativePath(message) +
                         " (give a LAS file of version 1.0 to 1.4)");
    }
    if (reader.numberOfPoints == 0)
        refuse(scan, "has a LAS header but holds no points; leave it out");
    const unsigned long long start = reader.offsetToPointData;
    const unsigned long long length = reader.pointDataRecordLength;
    const unsigned long long held = length == 0 || size < start ? 0 : (size - start) / length;
    if (held == 0)
        refuse(scan, "holds none of the " + std::to_string(reader.numberOfPoints) +
                         " points that its header claims; get a complete copy or leave it out");
    return std::min<unsigned long long>(held, reader.numberOfPoints);
}

unsigned long long availableIn(const std::string& folder) {
    struct statvfs system = {};
    // Where the system does not tell, it shall not stand in the way.
    if (statvfs(folder.c_str(), &system) != 0)
        return std::numeric_limits<unsigned long long>::max();
    return static_cast<unsigned long long>(system.f_bavail) * system.f_frsize;
}

/// Tries it, since rights do not tell all: the file system may be read-only, or none at all.
void requireNewFiles(const std::string& folder) {
    std::string probe = folder + "/vpc-probe-XXXXXX";
    if (mkdtemp(probe.data()) == nullptr)
        refuse(folder, "takes no new files (" + reason() +
                           "); change its rights or name another folder with -o or --work");
    rmdir(probe.c_str());
}

void requireRoom(const std::string& folder, unsigned long long needed) {
    const unsigned long long available = availableIn(folder);
    if (available >= needed) return;
    refuse(folder, "has " + DisplayText::Bytes(available) + " free and this run needs about " +
                       DisplayText::Bytes(needed) +
                       " there; make room, name other folders with --work and -o, or go on "
                       "with --force");
}

}  // namespace

std::string folderOf(const std::string& file) {
    const std::string folder = std::filesystem::path(file).parent_path().string();
    return folder.empty() ? "." : folder;
}

void PrepareChecks::Run() {
    CheckOutput();
    for (const std::string& scan : options_.scans) CheckScan(scan);
    CheckLog();
    CheckFolders();
    if (!options_.force) CheckRoom();
}

void PrepareChecks::CheckOutput() const {
    const std::string& output = options_.output;
    if (wxFileName(FileTools::FromNativePath(output)).GetExt() != PointTreeLayout::extension)
        refuse(output,
               "cannot be the output: tree files are named '.vpt', in small letters, "
               "because readers look for that extension; name it so");
    const auto status = statusOf(output);
    if (status && !S_ISREG(status->st_mode))
        refuse(output, "is there already and is no regular file; choose another output name");
    for (const std::string& scan : options_.scans)
        if (sameFile(output, scan))
            refuse(output,
                   "is the same file as the scan '" + scan + "'; choose another output name");
}

void PrepareChecks::CheckScan(const std::string& scan) {
    const auto status = statusOf(scan);
    if (!status && (errno == ENOENT || errno == ENOTDIR))
        refuse(scan, "does not exist; check the name");
    if (!status) refuse(scan, "cannot be looked at (" + reason() + "); check its folders' rights");
    if (!S_ISREG(status->st_mode)) refuse(scan, "is no regular file; name scan files only");
    CheckFormat(scan);
    if (!opens(scan, "rb"))
        refuse(scan, "cannot be read (" + reason() + "); change its permissions");
    if (format_ != DataFormat_LAS && !opens(scan, "r+b"))
        refuse(scan, "cannot be written (" + reason() +
                         "), and PTS and PTX scans are opened for update though never changed; "
                         "make it writable or use a copy");
    const auto size = static_cast<unsigned long long>(status->st_size);
    if (size == 0) refuse(scan, "is empty; get a complete copy or leave it out");
    points_ += format_ == DataFormat_LAS ? lasPoints(scan, size) : size / textBytesPerPoint + 1;
}

void PrepareChecks::CheckFormat(const std::string& scan) {
    const VpcDataFormat format = FileIoFactory::GetDataFormat(FileTools::FromNativePath(scan));
    if (format == DataFormat_Unknown)
        refuse(scan,
               "is no scan by its extension, which must be las, pts or ptx, all small or "
               "all capital letters; rename it or leave it out");
    if (format_ != DataFormat_Unknown && format != format_)
        refuse(scan, "is of another format than '" + options_.scans.front() +
                         "'; prepare scans of one format at a time");
    format_ = format;
}

void PrepareChecks::CheckLog() const {
    const std::string& log = options_.log;
    if (log.empty()) return;
    const auto clashes = [&](const std::string& other) { return sameFile(log, other); };
    if (log == options_.output || clashes(options_.output) ||
        std::any_of(options_.scans.begin(), options_.scans.end(), clashes))
        refuse(log, "cannot be the log, since it is a scan or the output; choose another name");
    const auto status = statusOf(log);
    if ((status && !S_ISREG(status->st_mode)) || !opens(log, "ab"))
        refuse(log, "cannot be written as the log; choose another name with --log");
}

void PrepareChecks::CheckFolders() const {
    const std::string outputFolder = folderOf(options_.output);
    for (const std::string& folder : {outputFolder, options_.work}) {
        if (folder.empty()) continue;
        const auto status = statusOf(folder);
        if (!status || !S_ISDIR(status->st_mode))
            refuse(folder, "is no folder; create it or name another one");
        requireNewFiles(folder);
    }
}

void PrepareChecks::CheckRoom() const {
    const bool octree = options_.tree == "octree";
    const unsigned long long leaves =
        std::min(points_, points_ / options_.maxPoints * nodesPerFullLeaf + 1);
    const unsigned long long result =
        points_ * (octree ? octreeBytesPerPoint : kdTreeBytesPerPoint) + leaves * bytesPerNode;
    const unsigned long long work = points_ * workBytesPerPoint;
    const std::string outputFolder = folderOf(options_.output);
    const std::string workFolder = options_.work.empty() ? outputFolder : options_.work;
    const auto outputStatus = statusOf(outputFolder);
    const auto workStatus = statusOf(workFolder);
    if (outputStatus && workStatus && outputStatus->st_dev == workStatus->st_dev) {
        requireRoom(outputFolder, result + work);
    } else {
        requireRoom(outputFolder, result);
        requireRoom(workFolder, work);
    }
}

}  // namespace vpc
