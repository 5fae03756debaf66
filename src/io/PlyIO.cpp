#include "io/PlyIO.h"

#include <algorithm>
#include <array>
#include <iostream>
#include <string>

#include "core/geometry/VpcNumMathTools.h"
#include "core/util/FileHandle.h"
#include "core/util/FileTools.h"
#include "core/util/StringTools.h"
#include "io/TextFileWriter.h"

namespace {

using Index = unsigned long long;

void writePosition(vpc::TextFileWriter& file, const VpcPoint3D& point) {
    file << std::string_view(point.ToString(false).utf8_string());
}

/// Writes the head of the face layout and its vertices.
void writeFaceLayoutStart(vpc::TextFileWriter& file, const PlyIO::Points& points, Index faces) {
    file << "ply\nformat ascii 1.0\n";
    file << "element vertex " << static_cast<Index>(points.size()) << "\n";
    file << "property float x\nproperty float y\nproperty float z\n";
    file << "element face " << faces << "\nproperty list uchar int vertex_index\n";
    file << "end_header\n";
    for (const VpcPoint3D& point : points) {
        writePosition(file, point);
        file << "\n";
    }
}

void writeTriangle(vpc::TextFileWriter& file, Index a, Index b, Index c) {
    file << "3 " << a << " " << b << " " << c << "\n";
}

/// Index `i` of a face. A face that is too short repeats its last index.
Index faceIndex(const std::vector<Index>& face, std::size_t i) {
    return face.empty() ? 0 : face[std::min(i, face.size() - 1)];
}

std::vector<wxString> words(const std::string& line) {
    // The writers put tabs between the coordinates.
    return StringTools::Split(wxString::FromUTF8(line), " \t\r");
}

/// Reads a header up to its end; gives the counts that it declares.
void readHeader(std::FILE* file, Index& vertices, Index& faces) {
    for (std::string line; vpc::readLine(file, line);) {
        const std::vector<wxString> tokens = words(line);
        if (tokens.size() == 1 && tokens[0] == "end_header") return;
        if (tokens.size() != 3 || tokens[0] != "element") continue;
        unsigned long long count = 0;
        tokens[2].ToULongLong(&count, 10);
        if (tokens[1] == "vertex") vertices = count;
        if (tokens[1] == "face") faces = count;
    }
}

double coordinate(const std::vector<wxString>& tokens, std::size_t i) {
    double value = 0;
    if (i < tokens.size()) tokens[i].ToCDouble(&value);
    return value;
}

}  // namespace

bool PlyIO::WriteEdges(Points points, Edges edges, wxString path) {
    vpc::writeBestEffort(path, [&](vpc::TextFileWriter& file) { WriteTo(file, points, edges); });
    return true;
}

void PlyIO::WriteTo(vpc::TextFileWriter& file, const Points& points, const Edges& edges) {
    file << "ply\nformat ascii 1.0\ncomment normal vectors\n";
    file << "element vertex " << static_cast<Index>(points.size()) << "\n";
    file << "property float x\nproperty float y\nproperty float z\n";
    file << "property uchar red\nproperty uchar green\nproperty uchar blue\n";
    file << "element edge " << static_cast<Index>(edges.size()) << "\n";
    file << "property int vertex1\nproperty int vertex2\nend_header\n";
    for (const VpcPoint3D& p : points) {
        writePosition(file, p);
        file << "\t" << static_cast<Index>(p.red) << "\t" << static_cast<Index>(p.green) << "\t"
             << static_cast<Index>(p.blue) << "\n";
    }
    for (const auto& [from, to] : edges) file << from << " " << to << "\n";
}

bool PlyIO::WriteVertices(Points points, wxString path) {
    return WriteEdges(std::move(points), {}, path);
}

bool PlyIO::WriteVerticesFaces(Points points, Faces faces, wxString path) {
    vpc::writeBestEffort(path, [&](vpc::TextFileWriter& file) {
        writeFaceLayoutStart(file, points, faces.size());
        for (const auto& face : faces)
            writeTriangle(file, faceIndex(face, 0), faceIndex(face, 1), faceIndex(face, 2));
    });
    return true;
}

bool PlyIO::WriteVerticesTriangles(Points points,
                                   std::vector<VpcTriplet<unsigned long long>> triangles,
                                   wxString path) {
    vpc::writeBestEffort(path, [&](vpc::TextFileWriter& file) {
        writeFaceLayoutStart(file, points, triangles.size());
        for (const auto& triangle : triangles)
            writeTriangle(file, triangle.first, triangle.second, triangle.third);
    });
    return true;
}

bool PlyIO::WriteCuboid(Points corners, wxString path) {
    return WriteVerticesFaces(std::move(corners),
                              {{0, 1, 2},
                               {0, 2, 3},
                               {0, 3, 7},
                               {0, 4, 7},
                               {3, 2, 6},
                               {3, 6, 7},
                               {1, 2, 6},
                               {1, 5, 6},
                               {0, 1, 5},
                               {0, 4, 5},
                               {4, 5, 6},
                               {4, 6, 7}},
                              path);
}

bool PlyIO::WriteAxisAlignedBoundingBoxes(std::vector<VpcBoundingBoxAxisAligned> boxes,
                                          wxString path) {
    vpc::writeBestEffort(path, [&](vpc::TextFileWriter& file) { WriteTo(file, boxes); });
    return true;
}

void PlyIO::WriteTo(vpc::TextFileWriter& file,
                    const std::vector<VpcBoundingBoxAxisAligned>& boxes) {
    static constexpr std::array<std::pair<Index, Index>, 12> boxEdges{{{0, 1},
                                                                       {0, 2},
                                                                       {2, 3},
                                                                       {1, 3},
                                                                       {1, 5},
                                                                       {3, 7},
                                                                       {0, 4},
                                                                       {2, 6},
                                                                       {4, 5},
                                                                       {5, 7},
                                                                       {6, 7},
                                                                       {4, 6}}};
    Points points;
    Edges edges;
    for (const VpcBoundingBoxAxisAligned& box : boxes) {
        const Index base = points.size();
        for (unsigned corner = 0; corner < 8; ++corner)
            points.emplace_back((corner & 4U ? box.maxPoint : box.minPoint).x,
                                (corner & 2U ? box.maxPoint : box.minPoint).y,
                                (corner & 1U ? box.maxPoint : box.minPoint).z);
        for (const auto& [from, to] : boxEdges) edges.emplace_back(base + from, base + to);
    }
    WriteTo(file, points, edges);
}

bool PlyIO::WriteFrustum(VpcFrustumDef frustum, wxString path) {
    vpc::writeBestEffort(path, [&](vpc::TextFileWriter& file) { WriteTo(file, frustum); });
    return true;
}

void PlyIO::WriteTo(vpc::TextFileWriter& file, const VpcFrustumDef& frustum) {
    Points points = frustum.GetRefVertices();
    points.push_back(frustum.GetCamera());
    points.push_back(frustum.GetTarget());
    WriteTo(file, points,
            {{0, 1},
             {0, 2},
             {1, 3},
             {2, 3},
             {0, 4},
             {1, 5},
             {2, 6},
             {3, 7},
             {4, 5},
             {4, 6},
             {5, 7},
             {6, 7},
             {8, 9}});
}

bool PlyIO::WritePlaneSegments(std::vector<Points> segments, wxString path) {
    Points points;
    Faces faces;
    for (const Points& segment : segments) {
        const Index base = points.size();
        points.insert(points.end(), segment.begin(), segment.end());
        for (Index k = 1; k + 1 < segment.size(); ++k)
            faces.push_back({base, base + k, base + k + 1});
    }
    return WriteVerticesFaces(std::move(points), std::move(faces), path);
}

PlyIO::Mesh PlyIO::MergeVerticesFacesList(const std::vector<Mesh>& meshes) {
    Mesh merged;
    for (const auto& [points, faces] : meshes) {
        const Index base = merged.first.size();
        merged.first.insert(merged.first.end(), points.begin(), points.end());
        for (std::vector<Index> face : faces) {
            for (Index& index : face) index += base;
            merged.second.push_back(std::move(face));
        }
    }
    return merged;
}

bool PlyIO::Read(wxString path, Points& points, VpcBoundingBoxAxisAligned& box) {
    const vpc::FileHandle handle(std::fopen(FileTools::ToNativePath(path).c_str(), "re"));
    std::FILE* const file = handle.get();
    if (file == nullptr) return false;
    Index vertexCount = 0, faceCount = 0;
    readHeader(file, vertexCount, faceCount);

    VpcBoundingBoxAxisAligned extent;
    VpcPoint3D point;
    std::string line;
    for (Index i = 0; i < vertexCount && vpc::readLine(file, line); ++i) {
        const std::vector<wxString> tokens = words(line);
        point.SetCoordinates(coordinate(tokens, 0), coordinate(tokens, 1), coordinate(tokens, 2));
        points.push_back(point);
        if (VpcNumMathTools::AreCoordinates(point.x, point.y, point.z))
            extent.UpdateRegionOfInterest(point);
    }
    if (extent.minPoint.x <= extent.maxPoint.x)
        box.SetNewBoundaries(extent.minPoint, extent.maxPoint);

    Index faces = 0;
    while (faces < faceCount && vpc::readLine(file, line)) ++faces;
    std::cout << "After reading ply file, now has " << points.size() << " points and " << faces
              << " faces." << std::endl;
    return true;
}
