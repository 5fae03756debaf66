#pragma once

#include <utility>
#include <vector>

#include <wx/string.h>

#include "core/geometry/VpcBoundingBoxAxisAligned.h"
#include "core/geometry/VpcFrustumDef.h"
#include "core/geometry/VpcPoint3D.h"
#include "core/geometry/VpcTriplet.h"

namespace vpc {
class TextFileWriter;
}

/// Writes geometry as ASCII PLY files that any mesh viewer opens, and reads their vertices back.
///
/// The writers replace an existing file and always return true: these files are for diagnosis, and
/// nothing fails because one is missing.
class PlyIO {
public:
    using Points = std::vector<VpcPoint3D>;
    /// Two vertex indices each, counted from 0.
    using Edges = std::vector<std::pair<unsigned long long, unsigned long long>>;
    /// Vertex indices of each face, counted from 0.
    using Faces = std::vector<std::vector<unsigned long long>>;
    using Mesh = std::pair<Points, Faces>;

    /// Coloured vertices and edges.
    static bool WriteEdges(Points points, Edges edges, wxString path);
    /// What WriteEdges, WriteAxisAlignedBoundingBoxes and WriteFrustum write, into an open file;
    /// failures throw vpc::IoError.
    static void WriteTo(vpc::TextFileWriter& file, const Points& points, const Edges& edges);
    static void WriteTo(vpc::TextFileWriter& file,
                        const std::vector<VpcBoundingBoxAxisAligned>& boxes);
    static void WriteTo(vpc::TextFileWriter& file, const VpcFrustumDef& frustum);
    /// Coloured vertices.
    static bool WriteVertices(Points points, wxString path);
    /// Vertices and faces, of which only the first three indices are written.
    static bool WriteVerticesFaces(Points points, Faces faces, wxString path);
    static bool WriteVerticesTriangles(Points points,
                                       std::vector<VpcTriplet<unsigned long long>> triangles,
                                       wxString path);
    /// Twelve triangles over eight corners: 0 to 3 one ring, 4 to 7 the opposite one.
    static bool WriteCuboid(Points corners, wxString path);
    /// Eight vertices and twelve edges for each box.
    static bool WriteAxisAlignedBoundingBoxes(std::vector<VpcBoundingBoxAxisAligned> boxes,
                                              wxString path);
    /// The frustum's corners with its edges, and a line from the camera to the target.
    static bool WriteFrustum(VpcFrustumDef frustum, wxString path);
    /// Convex polygons as triangle fans around their first points.
    static bool WritePlaneSegments(std::vector<Points> segments, wxString path);
    /// Joins the meshes to one, in their order, and adjusts the indices of the faces.
    static Mesh MergeVerticesFacesList(const std::vector<Mesh>& meshes);

    /// Appends the vertices of an ASCII PLY file to `points`; their first three values must be x, y
    /// and z. Sets `box` to their bounding box, or leaves it if there are none. Prints to standard
    /// output how much was read. False when the file cannot be opened.
    static bool Read(wxString path, Points& points, VpcBoundingBoxAxisAligned& box);
};
