// Reads the input as a scan, the way preparing does: once for the box around its points, then batch
// by batch to the end. Compiled once a format, with VPC_FUZZ_FORMAT and VPC_FUZZ_EXTENSION.

#include <array>
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

/// What one pass over all points comes to; zeros for one that fails.
struct Pass {
    unsigned long long points = 0;
    unsigned long long nonFinite = 0;
    /// Least and greatest coordinates, where there are any.
    std::array<double, 6> box{};

    bool operator==(const Pass&) const = default;
};

template <class Corner>
void setBox(Pass& pass, const Corner& low, const Corner& high) {
    if (pass.points > pass.nonFinite) pass.box = {low.x, low.y, low.z, high.x, high.y, high.z};
}

/// Counts a batch's points, each of which has to lie in the extent or has no place at all.
void addBatch(const FileParentIO& reader, unsigned long long count, Pass& pass) {
    const auto &low = reader.extentMin, &high = reader.extentMax;
    pass.points += count;
    for (const VpcPoint3D* p = reader.pointBuffer; p != reader.pointBuffer + count; ++p)
        if (VpcNumMathTools::AreCoordinates(p->x, p->y, p->z))
            require(p->x >= low.x && p->x <= high.x && p->y >= low.y && p->y <= high.y &&
                        p->z >= low.z && p->z <= high.z,
                    "the extent holds every point");
        else
            ++pass.nonFinite;
}

Pass readToTheEnd(const wxString& file) {
    const std::unique_ptr<FileParentIO> reader = FileIoFactory::Create(format, batchCapacity);
    Pass pass;
    if (reader->initializeRead(file) == nullptr) return {};
    while (reader->impossibleCount == 0 && reader->pointsRemaining != 0) {
        const unsigned long long count = reader->nextPointBatch();
        require(count <= batchCapacity, "a batch is no greater than its buffer");
        addBatch(*reader, count, pass);
    }
    if (reader->impossibleCount != 0) return {};
    require(pass.nonFinite == reader->nonFinitePoints, "points without a place are counted");
    setBox(pass, reader->extentMin, reader->extentMax);
    return pass;
}

/// The pass that preparing begins with, whose readers hold a hundred thousand points.
Pass measure(const wxString& file) {
    VpcBoundingBoxAxisAligned box;
    ScanSummary summary;
    wxString message;
    static_cast<void>(FileIoFactory::DetermineIs16bitColor({file}, format, message));
    if (!FileIoFactory::DetermineMultipleBoundingBox({file}, format, box, message, &summary))
        return {};
    require(summary.IsWhole() == message.empty(), "the message tells of all that is not whole");
    Pass pass{summary.points, summary.nonFinitePoints};
    setBox(pass, box.minPoint, box.maxPoint);
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
