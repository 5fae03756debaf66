#include "io/FileParentIO.h"

#include <filesystem>
#include <limits>
#include <system_error>

#include <wx/translation.h>

#include "core/geometry/VpcNumMathTools.h"
#include "core/util/FileTools.h"
#include "core/util/IoError.h"

namespace {

/// The size of a file in bytes; the largest number where it cannot be told.
unsigned long long sizeOfFile(const wxString& path) {
    std::error_code error;
    const auto size = std::filesystem::file_size(FileTools::ToNativePath(path), error);
    return error ? std::numeric_limits<unsigned long long>::max() : size;
}

}  // namespace

FileParentIO::FileParentIO(unsigned long long capacity)
    : batchCapacity(capacity), points_(capacity) {
    pointBuffer = points_.data();
    EmptyExtent();
}

void FileParentIO::EmptyExtent() {
    constexpr double beyond = VpcNumMathTools::beyondAll;
    extentMin = {beyond, beyond, beyond};
    extentMax = {-beyond, -beyond, -beyond};
}

void FileParentIO::InitializeExtent(double x, double y, double z) {
    EmptyExtent();
    if (VpcNumMathTools::AreCoordinates(x, y, z)) extentMin = extentMax = {x, y, z};
}

void FileParentIO::UpdateColorIntensityRanges(double r, double g, double b, double intensity) {
    if (r > maxRed) maxRed = ToUint16(r);
    if (g > maxGreen) maxGreen = ToUint16(g);
    if (b > maxBlue) maxBlue = ToUint16(b);
    if (intensity > maxIntensity) maxIntensity = intensity;
}

std::uint16_t FileParentIO::KeepLowBits(double value) {
    ++account_.oddColours;
    return ToUint16(value);
}

void FileParentIO::FailReading(int systemReason) const {
    throw vpc::IoError(fileName, wxGetTranslation("cannot be read to its end"), systemReason);
}

void FileParentIO::BeginFile(const wxString& path) {
    fileName = path;
    opened = false;
    openError = 0;
    pointsRemaining = 0;
    errorMessage.clear();
    fileBytes_ = sizeOfFile(path);
    EmptyExtent();
    grid.reset();
    nonFinitePoints = pointsWithoutValues = missingRecords = impossibleCount = 0;
    account_ = {};
}

ScanAccount FileParentIO::Account() const {
    ScanAccount account = account_;
    account.file = fileName;
    account.opened = opened;
    account.openError = openError;
    account.nonFinitePoints = nonFinitePoints;
    account.pointsWithoutValues = pointsWithoutValues;
    account.missingRecords = missingRecords;
    return account;
}

unsigned long long FileParentIO::BatchesOf(unsigned long long points) const {
    if (batchCapacity == 0) return 0;
    return points / batchCapacity + (points % batchCapacity != 0 ? 1 : 0);
}
