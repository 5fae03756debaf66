#include "vpc/export/SourceScans.h"

#include <filesystem>

#include "core/util/FileTools.h"
#include "io/LasIO.h"
#include "tree/file/PointTreeReader.h"
#include "vpc/common/OutputKind.h"

namespace vpc {

std::vector<std::string> sourceScans(PointTreeReader& tree) {
    const std::filesystem::path folder =
        std::filesystem::path(FileTools::ToNativePath(tree.FileName())).parent_path();
    std::vector<std::string> scans;
    for (const wxString& source : tree.Header().sourceNames) {
        const std::string name = FileTools::ToNativePath(source);
        scans.push_back(name);
        scans.push_back((folder / name).string());
    }
    return scans;
}

std::vector<CoordinateGrid> sourceGrids(PointTreeReader& tree) {
    std::vector<CoordinateGrid> grids;
    for (const std::string& scan : sourceScans(tree)) {
        LasIO reader(1);
        if (kindOfFile(scan) != FileKind::las ||
            !reader.readHeader(FileTools::FromNativePath(scan), true))
            continue;
        grids.push_back({{reader.scale.x, reader.scale.y, reader.scale.z},
                         {reader.offset.x, reader.offset.y, reader.offset.z}});
    }
    return grids;
}

}  // namespace vpc
