// Reads the input as a PLY file.

#include <iostream>

#include "InputFile.h"
#include "Require.h"
#include "core/geometry/VpcNumMathTools.h"
#include "io/PlyIO.h"

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
    // The reader prints there how much it has read.
    std::cout.rdbuf(nullptr);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const vpc::fuzz::InputFile file(data, size, "ply");
    PlyIO::Points points;
    VpcBoundingBoxAxisAligned box;
    vpc::fuzz::require(PlyIO::Read(file.name(), points, box), "a file that is there opens");
    vpc::fuzz::require(points.size() <= size, "no more vertices than lines");
    for (const VpcPoint3D& p : points)
        if (VpcNumMathTools::AreCoordinates(p.x, p.y, p.z))
            vpc::fuzz::require(p.x >= box.minPoint.x && p.x <= box.maxPoint.x &&
                                   p.y >= box.minPoint.y && p.y <= box.maxPoint.y &&
                                   p.z >= box.minPoint.z && p.z <= box.maxPoint.z,
                               "the box holds every vertex");
    return 0;
}
