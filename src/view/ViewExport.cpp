// The exports of PcCoreVisibleNodeManager.

#include <initializer_list>
#include <string>
#include <string_view>

#include "core/geometry/NumberText.h"
#include "io/PlyIO.h"
#include "io/TextFileWriter.h"
#include "tree/disk/VpcDiskNode.h"
#include "view/PcCoreVisibleNodeManager.h"

namespace {

wxString inFolder(const wxString& folder, const char* name) {
    return folder.empty() || folder.EndsWith("/") ? folder + name : folder + "/" + name;
}

/// Builds a text whose lines are a name and a value each.
class ParameterText {
public:
    template <class Point>
    ParameterText& Point3(std::string_view name, const Point& p) {
        return Line({name, "(", vpc::fixedText(p.x), ", ", vpc::fixedText(p.y), ", ",
                     vpc::fixedText(p.z), ")"});
    }
    ParameterText& Bounds(const OdGeExtents3d& bounds) {
        return Point3("Bounding box : min ", bounds.minPoint())
            .Point3("Bounding box : max ", bounds.maxPoint());
    }
    ParameterText& World(double width, double height) {
        return Line(
            {"World width ", vpc::fixedText(width), ", worldHeight = ", vpc::fixedText(height)});
    }
    ParameterText& Line(std::initializer_list<std::string_view> parts) {
        for (const std::string_view part : parts) text_ += part;
        text_ += "\r\n";
        return *this;
    }
    const std::string& Text() const { return text_; }

private:
    std::string text_;
};

/// Files of one folder, each of which is written as far as it can be.
class ExportFolder {
public:
    explicit ExportFolder(const wxString& folder) : folder_(folder) {}

    void WriteText(const char* name, const ParameterText& text) {
        Write(name, [&](vpc::TextFileWriter& file) { file << text.Text(); });
    }
    /// \param geometry boxes or a frustum
    template <class Geometry>
    void WritePly(const char* name, const Geometry& geometry) {
        Write(name, [&](vpc::TextFileWriter& file) { PlyIO::WriteTo(file, geometry); });
    }
    /// Whether all files so far were written.
    bool IsWhole() const { return isWhole_; }

private:
    template <class WriteInto>
    void Write(const char* name, const WriteInto& writeInto) {
        isWhole_ = vpc::writeBestEffort(inFolder(folder_, name), writeInto) && isWhole_;
    }

    wxString folder_;
    bool isWhole_ = true;
};

VpcBoundingBoxAxisAligned boxOf(const OdGeExtents3d& bounds) {
    const OdGePoint3d min = bounds.minPoint();
    const OdGePoint3d max = bounds.maxPoint();
    return {min.x, min.y, min.z, max.x, max.y, max.z};
}

}  // namespace

std::vector<VpcBoundingBoxAxisAligned> PcCoreVisibleNodeManager::getNodeBoundingBoxes(
    const std::vector<VisiblePointsNode>& nodes) {
    std::vector<VpcBoundingBoxAxisAligned> boxes;
    boxes.reserve(nodes.size());
    for (const VisiblePointsNode& visible : nodes) boxes.push_back(visible.node->box);
    return boxes;
}

bool PcCoreVisibleNodeManager::exportVisibleNodesAsPly(
    const wxString& folder, bool flatView, const OdGePoint3d& camera, const OdGePoint3d& target,
    const OdGeVector3d& upVector, const OdGeExtents3d& dataBounds, double worldWidth,
    double worldHeight, double pixelSize, const VpcFrustumDef& viewFrustum) const {
    ExportFolder files(folder);
    files.WriteText(
        "CameraParameters.txt",
        ParameterText()
            .Point3("Camera position: ", camera)
            .Point3("Camera lookat  : ", target)
            .Point3("Camera upVector: ", upVector)
            .Bounds(dataBounds)
            .World(worldWidth, worldHeight)
            .Point3("View near center: ", viewFrustum.GetNearCenter())
            .Point3("View far center:  ", viewFrustum.GetFarCenter())
            .Line({" => so size of a pixel in world units is ", vpc::fixedText(pixelSize)})
            .Line({"Current view mode => ",
                   flatView ? "flat pyramid level selection "
                            : "dynamic pyramid node selection (increase closer to camera) "}));
    files.WritePly("DataBoundaries.ply", std::vector{boxOf(dataBounds)});
    files.WritePly("CameraViewFrustum.ply", viewFrustum);
    files.WritePly("InViewFrustum.ply", getNodeBoundingBoxes(visibleNodes_));
    return files.IsWhole();
}

bool PcCoreVisibleNodeManager::exportPickNodesAsPly(
    const wxString& folder, const OdGePoint3d& camera, const OdGePoint3d& target,
    const OdGeVector3d& upVector, const OdGePoint3d& pickPoint, const OdGeExtents3d& dataBounds,
    double worldWidth, double worldHeight, const VpcFrustumDef& pickFrustum) const {
    ExportFolder files(folder);
    // Unlike the view's file, this one has no blank before the colon.
    files.WriteText("PickPointParameters.txt",
                    ParameterText()
                        .Point3("Camera position: ", camera)
                        .Point3("Camera lookat: ", target)
                        .Point3("Camera upVector: ", upVector)
                        .Point3("User pick point: ", pickPoint)
                        .Bounds(dataBounds)
                        .World(worldWidth, worldHeight)
                        .Point3("Pick near center: ", pickFrustum.GetNearCenter())
                        .Point3("Pick far center:  ", pickFrustum.GetFarCenter()));
    files.WritePly("PickPointFrustum.ply", pickFrustum);
    files.WritePly("InPickFrustum.ply", getNodeBoundingBoxes(pickNodes_));
    return files.IsWhole();
}
