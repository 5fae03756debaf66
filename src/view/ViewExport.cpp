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

/// Text of lines that name a value.
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
    void WriteTo(const wxString& path) const {
        vpc::writeBestEffort(path, [this](vpc::TextFileWriter& file) { file << text_; });
    }

private:
    std::string text_;
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

void PcCoreVisibleNodeManager::exportVisibleNodesAsPly(
    const wxString& folder, bool flatView, const OdGePoint3d& camera, const OdGePoint3d& target,
    const OdGeVector3d& upVector, const OdGeExtents3d& dataBounds, double worldWidth,
    double worldHeight, double pixelSize, const VpcFrustumDef& viewFrustum) const {
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
                        : "dynamic pyramid node selection (increase closer to camera) "})
        .WriteTo(inFolder(folder, "CameraParameters.txt"));
    PlyIO::WriteAxisAlignedBoundingBoxes({boxOf(dataBounds)},
                                         inFolder(folder, "DataBoundaries.ply"));
    PlyIO::WriteFrustum(viewFrustum, inFolder(folder, "CameraViewFrustum.ply"));
    PlyIO::WriteAxisAlignedBoundingBoxes(getNodeBoundingBoxes(visibleNodes_),
                                         inFolder(folder, "InViewFrustum.ply"));
}

void PcCoreVisibleNodeManager::exportPickNodesAsPly(
    const wxString& folder, const OdGePoint3d& camera, const OdGePoint3d& target,
    const OdGeVector3d& upVector, const OdGePoint3d& pickPoint, const OdGeExtents3d& dataBounds,
    double worldWidth, double worldHeight, const VpcFrustumDef& pickFrustum) const {
    // Without the blank that the view's file has before the colon.
    ParameterText()
        .Point3("Camera position: ", camera)
        .Point3("Camera lookat: ", target)
        .Point3("Camera upVector: ", upVector)
        .Point3("User pick point: ", pickPoint)
        .Bounds(dataBounds)
        .World(worldWidth, worldHeight)
        .Point3("Pick near center: ", pickFrustum.GetNearCenter())
        .Point3("Pick far center:  ", pickFrustum.GetFarCenter())
        .WriteTo(inFolder(folder, "PickPointParameters.txt"));
    PlyIO::WriteFrustum(pickFrustum, inFolder(folder, "PickPointFrustum.ply"));
    PlyIO::WriteAxisAlignedBoundingBoxes(getNodeBoundingBoxes(pickNodes_),
                                         inFolder(folder, "InPickFrustum.ply"));
}
