#pragma once

#include <unistd.h>

#include <cmath>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <random>
#include <stdexcept>
#include <string>

#include "LasHeader.h"
#include "tree/construct/PcCorePointPrepare.h"
#include "view/PcCoreProjectManager.h"

/// The view that benchmarks measure: 5 million points of a rolling ground, all of them shown.
namespace viewed {

constexpr unsigned long long points = 5'000'000;
/// A level is shown only if its points are fewer than the budget less 1.
constexpr unsigned long long budget = points + 2;

/// A folder of the program's own, removed when it ends.
class Folder {
public:
    Folder() {
        std::string name =
            (std::filesystem::temp_directory_path() / "vpc-view-bench-XXXXXX").string();
        if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary folder");
        path_ = name;
    }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;
    ~Folder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    std::string file(const std::string& name) const { return (path_ / name).string(); }

private:
    std::filesystem::path path_;
};

inline void writeScan(const std::string& path) {
    std::ofstream file(path, std::ios::binary);
    const std::string header = lasHeader(points);
    file.write(header.data(), static_cast<std::streamsize>(header.size()));
    std::mt19937_64 engine(1);
    std::string record(34, '\0');
    for (unsigned long long i = 0; i < points; ++i) {
        const auto x = static_cast<std::int32_t>(engine() % 1'000'000);
        const auto y = static_cast<std::int32_t>(engine() % 1'000'000);
        const double height = 40'000 * std::sin(x * 1e-5) * std::cos(y * 1.3e-5);
        put(record, 0, x);
        put(record, 4, y);
        put(record, 8, static_cast<std::int32_t>(height) + static_cast<int>(engine() % 500));
        for (std::size_t at = 28; at < 34; at += 2)
            put(record, at, static_cast<std::uint16_t>(engine() % 256));
        file.write(record.data(), static_cast<std::streamsize>(record.size()));
    }
}

inline OdGeMatrix3d turned() {
    OdGeMatrix3d matrix;
    matrix[0][0] = matrix[1][1] = std::cos(0.3);
    matrix[1][0] = std::sin(0.3);
    matrix[0][1] = -matrix[1][0];
    matrix[2][3] = 10;
    return matrix;
}

/// The prepared tree, loaded, with buffers that hold all of it.
class Project {
public:
    Project() {
        const std::string scan = folder_.file("scan.las");
        writeScan(scan);
        std::filesystem::create_directory(folder_.file("work"));
        const TreePrepareResult result = PcCorePointPrepare::preparePointData(
            1, folder_.file("work/"), {scan}, tree(), Tree_Octree, 10'000, 12);
        std::filesystem::remove(scan);
        if (!result.success || !manager.loadProjectFromFile(tree()))
            throw std::runtime_error("no tree: " + result.message.ToStdString(wxConvUTF8));
        manager.visibleNodeManager().resizePointBuffer(budget);
    }
    std::string tree() const { return folder_.file("scan.vpt"); }

    unsigned long long update(GiPcStylizationType stylization) {
        manager.stylizationType = stylization;
        manager.colorScheme = GiPc_ColorScheme_Spectrum;
        return manager.updateVisiblePoints(matrix, camera, target, up, 1600, 1200, 1600, 1200,
                                           true);
    }
    bool pick(const OdGePoint3d& at, OdGePoint3d& found) {
        unsigned short unused = 0;
        return manager.pickPointFast(matrix, camera, target, up, 1600, 1200, 1600, 1200, true, at,
                                     5, found, unused, unused, unused);
    }

    const OdGeMatrix3d matrix = turned();
    const OdGePoint3d target{300, 600, 0};
    const OdGePoint3d camera{300, -900, 1500};
    const OdGeVector3d up{0, 0.7, 0.7};
    PcCoreProjectManager manager;

private:
    Folder folder_;
};

/// Made when it is first asked for.
inline Project& project() {
    static Project made;
    return made;
}

}  // namespace viewed
