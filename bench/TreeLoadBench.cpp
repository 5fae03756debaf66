// Workload: the view side opens and reads a point tree file from the system's cache. The benchmark
// makes the files in the temporary folder and removes them at its end.
//
// Hierarchy: 112,348 nodes in seven levels without points, about 50 MB of records. The root has 3
// children, every other node above the deepest level has 8. The floor reads the same bytes in
// blocks of 1 MiB and builds a plain struct of every record's fixed members, each in a block of
// memory of its own; it follows no link and looks at no path.
//
// Points: 192 nodes of 26,000 points, read one after the other into arrays of 5,000,000 slots. The
// floor reads the same byte ranges, each with one seek and one read into the same block, and copies
// the 36 bytes of a point that are drawn into three arrays.

#include <fcntl.h>
#include <malloc.h>
#include <unistd.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "platform/GiPcClipConfig.h"
#include "platform/OdCmEntityColor.h"
#include "platform/OdGePoint3d.h"
#include "tree/disk/VpcDiskNode.h"
#include "tree/disk/VpcDiskTree.h"
#include "tree/file/PointTreeLayout.h"

namespace {

namespace Layout = PointTreeLayout;
using Word = unsigned long long;

/// A tree file in the temporary folder, removed when the program ends.
class MadeTree {
public:
    MadeTree(Word levels, Word pointsPerLeaf)
        : path_(std::filesystem::temp_directory_path() /
                ("vpc-tree-bench-" + std::to_string(getpid()) + '-' + std::to_string(levels))),
          levels_(levels),
          pointsPerLeaf_(pointsPerLeaf) {
        for (Word level = 0; level < levels; ++level) counts_.push_back(nodesIn(level));
        for (const bool isMeasured : {true, false}) {
            blocks_ = bytes_.size();
            bytes_.clear();
            if (isMeasured) blocks_ = 0;
            putHeader();
            for (Word level = 0; level < levels; ++level)
                for (Word node = 0; node < counts_[level]; ++node) putRecord(level, node);
        }
        recordBytes_ = bytes_.size() - Layout::firstNodeRecordPosition(Layout::wordSize, levels_);
        save();
    }
    MadeTree(const MadeTree&) = delete;
    MadeTree& operator=(const MadeTree&) = delete;
    ~MadeTree() {
        std::error_code ignored;
        std::filesystem::remove(path_, ignored);
    }

    const std::filesystem::path& path() const { return path_; }
    wxString name() const { return wxString::FromUTF8(path_.string()); }
    const std::vector<Word>& counts() const { return counts_; }
    Word recordBytes() const { return recordBytes_; }
    Word firstRecord() const { return Layout::firstNodeRecordPosition(8, levels_); }
    Word firstBlock() const { return bytes_.size(); }
    Word pointsPerLeaf() const { return pointsPerLeaf_; }
    Word leaves() const { return counts_.back(); }
    Word nodes() const {
        Word sum = 0;
        for (const Word count : counts_) sum += count;
        return sum;
    }

private:
    static Word nodesIn(Word level) { return level == 0 ? 1 : Word{3} << 3 * (level - 1); }
    Layout::ChildGrid gridOf(Word level) const {
        if (level + 1 == levels_) return {1, 1, 1};
        if (level == 0) return {3, 1, 1};
        return {2, 2, 2};
    }
    template <class T>
    void put(T value) {
        bytes_.append(reinterpret_cast<const char*>(&value), sizeof value);
    }
    void putHeader() {
        put(Word{9}), put(Word{0}), put(0.01), put(pointsPerLeaf_);
        bytes_.append(1 + 6 + 7 * 8, '\0');
        for (int word = 0; word < 4; ++word) put(Word{0});
        put(Word{54}), put(levels_);
        for (const Word count : counts_) put(count);
    }
    void putRecord(Word level, Word node) {
        put(level), put(0.5);
        for (Word step = 0; step <= level; ++step) {
            // The node's ancestor in this level, and which child of its parent it is.
            const Word ancestor = node >> 3 * (level - step);
            const Word cell = step == 0 ? 0 : step == 1 ? ancestor : ancestor % 8;
            if (step == 1)
                put(cell), put(Word{0}), put(Word{0});
            else
                put(cell % 2), put(cell / 2 % 2), put(cell / 4);
        }
        for (Word step = 0; step <= level; ++step) {
            const Layout::ChildGrid grid =
                step == 0 ? Layout::ChildGrid{1, 1, 1} : gridOf(step - 1);
            put(grid.x), put(grid.y), put(grid.z);
        }
        for (int i = 0; i < 6; ++i) put(i < 3 ? 0.0 : 1.0 + static_cast<double>(node));
        const bool isLeaf = level + 1 == levels_;
        put(isLeaf ? pointsPerLeaf_ : 0);
        const Layout::ChildGrid grid = gridOf(level);
        put(grid.x), put(grid.y), put(grid.z);
        for (Word i = 0; i < grid.widths(); ++i) put(0.25);
        const Word block = blocks_ + (isLeaf ? node * (16 + 54 * pointsPerLeaf_) : 0);
        put(Word{1}), put(block), put(isLeaf ? block + 16 : blocks_), put(Word{2}), put(Word{3});
        bytes_.append(Layout::childEntrySize * grid.cells(), '\0');
    }
    void save() const {
        const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path_.c_str(), "wb"),
                                                                   std::fclose);
        if (file == nullptr) throw std::runtime_error("cannot write " + path_.string());
        std::fwrite(bytes_.data(), 1, bytes_.size(), file.get());
        const std::string block(16 + 54 * pointsPerLeaf_, '\1');
        for (Word leaf = 0; leaf < leaves(); ++leaf)
            std::fwrite(block.data(), 1, block.size(), file.get());
    }

    std::filesystem::path path_;
    Word levels_;
    Word pointsPerLeaf_;
    std::vector<Word> counts_;
    std::string bytes_;
    Word blocks_ = 0;
    Word recordBytes_ = 0;
};

const MadeTree& hierarchy() {
    static const MadeTree tree(7, 0);
    return tree;
}

const MadeTree& points() {
    static const MadeTree tree(4, 26'000);
    return tree;
}

/// Bytes that the program has from the heap, with those that the heap needs for itself.
Word heapBytes() {
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

void BM_LoadHierarchy(benchmark::State& state) {
    const MadeTree& file = hierarchy();
    Word bytes = 0;
    for (auto _ : state) {
        const Word before = heapBytes();
        auto tree = std::make_unique<VpcDiskTree>();
        if (!tree->CreateFromFile(file.name())) throw std::runtime_error("cannot load");
        bytes = heapBytes() - before;
        state.PauseTiming();
        tree.reset();
        state.ResumeTiming();
    }
    const auto nodes = static_cast<double>(file.nodes());
    state.counters["nodes"] = nodes;
    state.counters["bytes_a_node"] = static_cast<double>(bytes) / nodes;
    state.counters["file_bytes_a_node"] = static_cast<double>(file.recordBytes()) / nodes;
}

struct PlainNode {
    double minDistance;
    std::array<double, 6> box;
    std::array<Word, 4> counts;
    std::array<Word, 5> positions;
};

/// Gives records one after the other from a block of 1 MiB, and fills it again when less is left in
/// it than a record may take.
class RecordBytes {
public:
    explicit RecordBytes(const MadeTree& file) : handle_(open(file.path().c_str(), O_RDONLY)) {
        lseek(handle_, static_cast<off_t>(file.firstRecord()), SEEK_SET);
    }
    RecordBytes(const RecordBytes&) = delete;
    RecordBytes& operator=(const RecordBytes&) = delete;
    ~RecordBytes() { close(handle_); }

    const char* next() {
        if (end_ - at_ < longest) {
            std::memmove(block_.data(), block_.data() + at_, end_ - at_);
            end_ -= at_;
            at_ = 0;
            const ssize_t got = read(handle_, block_.data() + end_, block_.size() - end_);
            end_ += got > 0 ? static_cast<std::size_t>(got) : 0;
        }
        return block_.data() + at_;
    }
    void skip(std::size_t bytes) { at_ += bytes; }

private:
    static constexpr std::size_t longest = 1024;

    int handle_;
    std::vector<char> block_ = std::vector<char>(std::size_t{1} << 20);
    std::size_t at_ = 0;
    std::size_t end_ = 0;
};

std::unique_ptr<PlainNode> plainNode(const char* record, Word level, Layout::ChildGrid& grid) {
    auto node = std::make_unique<PlainNode>();
    std::memcpy(&node->minDistance, record + 8, 8);
    std::memcpy(&node->box, record + Layout::boxMinimumOffset(level), 48);
    std::memcpy(&node->counts, record + Layout::pointCountOffset(level), 32);
    grid = {node->counts[1], node->counts[2], node->counts[3]};
    std::memcpy(&node->positions, record + Layout::recordPositionOffset(level, grid), 40);
    return node;
}

void BM_LoadHierarchyFloor(benchmark::State& state) {
    const MadeTree& file = hierarchy();
    for (auto _ : state) {
        std::vector<std::unique_ptr<PlainNode>> nodes;
        nodes.reserve(file.nodes());
        RecordBytes records(file);
        Layout::ChildGrid grid;
        for (Word level = 0; level < file.counts().size(); ++level)
            for (Word i = 0; i < file.counts()[level]; ++i) {
                nodes.push_back(plainNode(records.next(), level, grid));
                records.skip(Layout::recordSize(level, grid));
            }
        benchmark::DoNotOptimize(nodes.data());
        state.PauseTiming();
        nodes.clear();
        state.ResumeTiming();
    }
}

/// The arrays that a view's points go to.
struct Arrays {
    static constexpr std::size_t slots = 5'000'000;
    std::vector<OdGePoint3d> coords = std::vector<OdGePoint3d>(slots);
    std::vector<OdCmEntityColor> colours = std::vector<OdCmEntityColor>(slots);
    std::vector<double> sizes = std::vector<double>(slots);
};

Arrays& arrays() {
    static Arrays made;
    return made;
}

/// \param withFilter a section plane and a polygon that every point passes
void readPoints(benchmark::State& state, bool withFilter) {
    VpcDiskTree tree;
    if (!tree.CreateFromFile(points().name())) state.SkipWithError("cannot load");
    if (withFilter) {
        tree.SetSectionPlanes(
            {{OdString(), VpcPlaneDef(VpcPoint3D(-9, 0, 0), VpcVector3D(1, 0, 0))}},
            VpcTransform3D());
        GiPcClipConfig square;
        square.type = 1;
        square.flag2 = true;
        square.vertices = {{-9, -9}, {9, -9}, {9, 9}, {-9, 9}};
        tree.SetLocalClippings({square});
    }
    Arrays& to = arrays();
    Word slot = 0;
    for (auto _ : state) {
        slot = 0;
        for (VpcDiskNode* node : tree.GetLevels().back())
            slot += node->AddPointsFromDisk(slot, to.coords.data(), to.colours.data(),
                                            to.sizes.data(), Arrays::slots, Arrays::slots);
    }
    state.counters["points"] = static_cast<double>(slot);
}

void BM_ReadPoints(benchmark::State& state) {
    readPoints(state, false);
}

void BM_ReadPointsFiltered(benchmark::State& state) {
    readPoints(state, true);
}

void BM_ReadPointsFloor(benchmark::State& state) {
    const MadeTree& file = points();
    const Word count = file.pointsPerLeaf();
    std::vector<char> block(54 * count);
    Arrays& to = arrays();
    const int handle = open(file.path().c_str(), O_RDONLY);
    for (auto _ : state) {
        std::size_t slot = 0;
        for (Word leaf = 0; leaf < file.leaves(); ++leaf) {
            lseek(handle, static_cast<off_t>(file.firstBlock() + leaf * (16 + block.size()) + 16),
                  SEEK_SET);
            if (read(handle, block.data(), block.size()) != static_cast<ssize_t>(block.size()))
                state.SkipWithError("cannot read");
            for (const char* record = block.data(); record != block.data() + block.size();
                 record += 54, ++slot) {
                std::memcpy(static_cast<void*>(&to.coords[slot]), record, 24);
                std::memcpy(static_cast<void*>(&to.colours[slot]), record + 24, 4);
                std::memcpy(&to.sizes[slot], record + 38, 8);
            }
        }
        benchmark::DoNotOptimize(slot);
    }
    close(handle);
}

BENCHMARK(BM_LoadHierarchy)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_LoadHierarchyFloor)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ReadPoints)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ReadPointsFiltered)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ReadPointsFloor)->Unit(benchmark::kMillisecond);

}  // namespace
