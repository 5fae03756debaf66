#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/ReferenceTree.h"
#include "support/ScanFiles.h"
#include "support/TempFolder.h"
#include "support/TreeFile.h"
#include "tree/construct/PcCorePointPrepare.h"
#include "tree/construct/PrepareObserver.h"

namespace vpc::test {

/// The driver's result over `files` with a working folder `work`, given as the driver takes it.
inline TreePrepareResult prepare(const std::vector<std::string>& files, const std::string& work,
                                 const std::string& output, const ReferenceSettings& settings = {},
                                 PrepareObserver* observer = nullptr) {
    std::vector<wxString> names;
    for (const std::string& file : files) names.push_back(toWx(file));
    const VpcTreeType type = settings.isKdTree ? Tree_KdTree_Symmetric : Tree_Octree;
    const auto run = [&](auto&... watched) {
        return PcCorePointPrepare::preparePointData(settings.hostValue, toWx(work), names,
                                                    toWx(output), type, settings.maxPointsPerNode,
                                                    settings.maxLevel, watched...);
    };
    return observer == nullptr ? run() : run(*observer);
}

/// A folder with room for scans, for temporary files and for one result.
class PrepareFolder : public TempFolder {
public:
    explicit PrepareFolder(const std::string& suffix = "") : TempFolder(suffix) {
        std::filesystem::create_directories(work());
    }
    /// The working folder with the separator that it has to end with.
    std::string work() const { return file("work/"); }
    std::string output() const { return file("t.vpt"); }
    std::string scan(const std::string& name) const { return file(name); }
    /// Whether a run, however it ended, has left nothing behind: no temporary file anywhere and no
    /// new file beside `expected`.
    bool holdsOnly(std::set<std::string> expected) const {
        expected.insert("work");
        return names() == expected;
    }
    /// Makes a scan "t.ptx" and the tree file of it; returns the points that they hold.
    std::vector<PointRecord> prepareTree(const PtxScan& content,
                                         const ReferenceSettings& settings) const {
        const auto points = writePtx(file("t.ptx"), {content});
        const auto result = prepare({file("t.ptx")}, work(), output(), settings);
        EXPECT_TRUE(result.success) << result.message;
        return points;
    }
    /// The size of the files without a name that this process has open in the working folder.
    Word spilledBytes() const {
        Word bytes = 0;
        for (const auto& file : std::filesystem::directory_iterator("/proc/self/fd")) {
            std::error_code gone;
            const std::string name = std::filesystem::read_symlink(file, gone).string();
            if (name.find(work()) == 0) bytes += std::filesystem::file_size(file, gone);
        }
        return bytes;
    }
    TreeFile tree() const { return TreeFile(readBytes(output())); }
};

}  // namespace vpc::test
