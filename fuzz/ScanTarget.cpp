// Reads the input as a scan, the way preparing does: once for the box around its points, then batch
// by batch to the end. Compiled once a format, with VPC_FUZZ_FORMAT and VPC_FUZZ_EXTENSION.

#include <memory>

#include "InputFile.h"
#include "Require.h"
#include "core/geometry/VpcNumMathTools.h"
#include "io/FileIoFactory.h"

namespace {

using vpc::fuzz::require;

constexpr VpcDataFormat format = VPC_FUZZ_FORMAT;
/// Few, so that small inputs make many batches too.
constexpr unsigned long long batchCapacity = 16;

bool isSame(const VpcPoint3D& a, const VpcPoint3D& b) {
    return a.x == b.x && a.y == b.y && a.z == b.z;
}

bool isSame(const VpcBoundingBoxAxisAligned& a, const VpcBoundingBoxAxisAligned& b) {
    return isSame(a.minPoint, b.minPoint) && isSame(a.maxPoint, b.maxPoint);
}

/// What one pass over all points comes to.
struct Pass {
    bool succeeded = false;
    unsigned long long points = 0;
    unsigned long long nonFinite = 0;
    VpcBoundingBoxAxisAligned box;

    bool operator==(const Pass& other) const {
        if (succeeded != other.succeeded) return false;
        if (!succeeded) return true;
        const bool sameCounts = points == other.points && nonFinite == other.nonFinite;
        return sameCounts && (points == nonFinite || isSame(box, other.box));
    }
};

bool liesWithin(const VpcPoint3D& p, const FileParentIO& reader) {
    const auto& [x0, y0, z0] = reader.extentMin;
    const auto& [x1, y1, z1] = reader.extentMax;
    return p.x >= x0 && p.x <= x1 && p.y >= y0 && p.y <= y1 && p.z >= z0 && p.z <= z1;
}

/// Counts a batch's points, each of which has to lie in the extent or has no place at all.
void addBatch(const FileParentIO& reader, unsigned long long count, Pass& pass) {
    pass.points += count;
    for (const VpcPoint3D* p = reader.pointBuffer; p != reader.pointBuffer + count; ++p)
        if (VpcNumMathTools::AreCoordinates(p->x, p->y, p->z))
            require(liesWithin(*p, reader), "the extent holds every point");
        else
            ++pass.nonFinite;
}

Pass readToTheEnd(const wxString& file) {
    const std::unique_ptr<FileParentIO> reader = FileIoFactory::Create(format, batchCapacity);
    Pass pass;
    if (reader->initializeRead(file) == nullptr) return pass;
    pass.succeeded = reader->impossibleCount == 0;
    while (pass.succeeded && reader->pointsRemaining != 0) {
        const unsigned long long count = reader->nextPointBatch();
        require(count <= batchCapacity, "a batch is no greater than its buffer");
        addBatch(*reader, count, pass);
        pass.succeeded = reader->impossibleCount == 0;
    }
    require(pass.nonFinite == reader->nonFinitePoints, "points without a place are counted");
    reader->closeRead();
    const auto& low = reader->extentMin;
    const auto& high = reader->extentMax;
    pass.box.SetNewBoundaries(low.x, low.y, low.z, high.x, high.y, high.z);
    return pass;
}

/// The pass that preparing begins with, whose readers hold a hundred thousand points.
Pass measure(const wxString& file) {
    Pass pass;
    ScanSummary summary;
    wxString message;
    pass.succeeded =
        FileIoFactory::DetermineMultipleBoundingBox({file}, format, pass.box, message, &summary);
    pass.points = summary.points;
    pass.nonFinite = summary.nonFinitePoints;
    FileIoFactory::DetermineIs16bitColor({file}, format, message);
    return pass;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const vpc::fuzz::InputFile file(data, size, VPC_FUZZ_EXTENSION);
    const Pass pass = readToTheEnd(file.name());
    // A point of the second pass outside of the first one's box would be lost.
    require(readToTheEnd(file.name()) == pass, "every pass gives the same points");
    if (file.IsOneIn(64)) require(measure(file.name()) == pass, "batches of any size do as well");
    return 0;
}
