#pragma once

#include <cstring>
#include <string>

#include "core/util/StringTools.h"
#include "core/util/VpcDefinitions.h"
#include "host/PcCorePointSet.h"
#include "platform/OdSystemVariables.h"
#include "support/PrepareRun.h"

namespace vpc::test {

inline OdString toOd(const std::string& path) {
    return StringTools::ToOdString(toWx(path));
}

/// A prepared tree file for a host.
class HostScene : public PrepareFolder {
public:
    explicit HostScene(const Cloud& cloud = {})
        : points(prepareTree({makeCloud(cloud)}, {6, true, 100, 8})) {}

    OdString name() const { return toOd(output()); }
    /// Writes a word into the file; the version is the first.
    void patch(std::size_t position, Word word) const {
        std::string bytes = readBytes(output());
        std::memcpy(bytes.data() + position, &word, sizeof word);
        writeBytes(output(), bytes);
    }

    std::vector<PointRecord> points;
};

/// Calls an operation that takes a view with a parallel one from straight above that shows all.
template <class Set, class Operation>
auto fromAbove(Set& set, const OdGePoint3d& low, const OdGePoint3d& high, Operation operation,
               const OdGeMatrix3d& matrix = {}) {
    const OdGeVector3d size = high - low;
    const double field = 2 * size.length();
    OdGePoint3d target = low + size * 0.5;
    target.transformBy(matrix);
    const OdGePoint3d camera = target + OdGeVector3d(0, 0, field);
    return (set.*operation)(matrix, camera, target, {0, 1, 0}, field, field, 500, 500, false);
}

inline Word viewFromAbove(GiPointSetDefinition& set, const OdString& file,
                          const OdGeMatrix3d& matrix = {}) {
    OdGePoint3d low, high;
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
