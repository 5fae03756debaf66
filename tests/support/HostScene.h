#pragma once

#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "core/util/StringTools.h"
#include "core/util/VpcDefinitions.h"
#include "host/PcCorePointSet.h"
#include "platform/OdSystemVariables.h"
#include "platform/TreePreparePars.h"
#include "support/PrepareRun.h"
#include "support/ScanFiles.h"

namespace vpc::test {

inline OdString toOd(const std::string& path) {
    return StringTools::ToOdString(toWx(path));
}

/// A tree file as a host prepares it, its scan's points, and a view of all of them.
class HostScene {
public:
    explicit HostScene(const Cloud& cloud = {}, const std::string& folderSuffix = "")
        : folder(folderSuffix),
          points(writePts(folder.scan("scan.pts"), 7, {makeCloud(cloud)})),
          file(folder.folder.file("scan.vpt")) {
        TreePreparePars pars;
        pars.headerValue = 6;
        pars.workingFolder = toWx(folder.work());
        pars.inputFiles = {toWx(folder.scan("scan.pts"))};
        pars.outputFile = toWx(file);
        pars.treeType = Tree_KdTree_Symmetric;
        pars.maxPointsPerNode = 100;
        pars.maxLevel = 8;
        result = PcCorePointSet::preparePointData(pars);
    }

    OdString name() const { return toOd(file); }
    /// Writes a word into the file; the version is the first.
    void patch(std::size_t position, unsigned long long word) const {
        std::string bytes = readBytes(file);
        std::memcpy(bytes.data() + position, &word, sizeof word);
        writeBytes(file, bytes);
    }

    PrepareFolder folder;
    std::vector<PointRecord> points;
    std::string file;
    TreePrepareResult result;
};

/// Calls an operation that takes a view with a parallel one from straight above that shows all.
template <class Set, class Operation>
auto fromAbove(Set& set, const OdGePoint3d& low, const OdGePoint3d& high, Operation operation,
               const OdGeMatrix3d& matrix = {}) {
    const OdGeVector3d size = high - low;
    OdGePoint3d target = low + size * 0.5;
    target.transformBy(matrix);
    const OdGePoint3d camera = target + OdGeVector3d(0, 0, 2 * size.length());
    return (set.*operation)(matrix, camera, target, OdGeVector3d(0, 1, 0), 2 * size.length(),
                            2 * size.length(), 500, 500, false);
}

inline unsigned long long viewFromAbove(GiPointSetDefinition& set, const OdString& file,
                                        const OdGeMatrix3d& matrix = {}) {
    OdGePoint3d low;
    OdGePoint3d high;
    PcCorePointSet::readDataMinMax(file, low, high);
    return fromAbove(set, low, high, &GiPointSetDefinition::updateVisiblePoints, matrix);
}

/// Sets POINTCLOUDPOINTMAX for one test.
class PointMaxGuard {
public:
    explicit PointMaxGuard(int value) { set(value); }
    PointMaxGuard(const PointMaxGuard&) = delete;
    PointMaxGuard& operator=(const PointMaxGuard&) = delete;
    ~PointMaxGuard() { set(before_); }

    void set(int value) const { odSystemVariables().setInt("POINTCLOUDPOINTMAX", value); }

private:
    int before_ = odSystemVariables().getInt("POINTCLOUDPOINTMAX");
};

}  // namespace vpc::test
