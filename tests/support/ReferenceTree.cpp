#include "support/ReferenceTree.h"

#include <algorithm>
#include <array>
#include <limits>
#include <memory>

#include "support/TreeFile.h"

namespace vpc::test {

namespace {

struct Box {
    Doubles3 min{1e65, 1e65, 1e65};
    Doubles3 max{-1e65, -1e65, -1e65};

    double side(std::size_t axis) const { return max[axis] - min[axis]; }
    double shortest() const { return std::min({side(0), side(1), side(2)}); }
    void include(const PointRecord& p) {
        for (std::size_t axis = 0; axis < 3; ++axis) {
            min[axis] = std::min(min[axis], p.coordinate(static_cast<int>(axis)));
            max[axis] = std::max(max[axis], p.coordinate(static_cast<int>(axis)));
        }
    }
    void addMargin(double margin) {
        for (std::size_t axis = 0; axis < 3; ++axis) min[axis] -= margin, max[axis] += margin;
    }
    bool contains(const PointRecord& p) const {
        for (std::size_t axis = 0; axis < 3; ++axis) {
            const double value = p.coordinate(static_cast<int>(axis));
            if (!(min[axis] <= value && value < max[axis])) return false;
        }
        return true;
    }
};

struct Node {
    Box box;
    Node* parent = nullptr;
    std::vector<Words3> path;
    std::vector<Words3> gridPath;
    Words3 grid{};
    Doubles3 cell{};
    std::vector<std::unique_ptr<Node>> children;
    std::vector<PointRecord> points;
    double distance = 0;
    Word record = 0;
    Word block = 0;

    std::size_t level() const { return path.size() - 1; }
};

class Model {
public:
    explicit Model(const ReferenceSettings& newSettings) : settings_(newSettings) {}

    void start(const Box& dataBox) {
        root_ = makeNode(dataBox, nullptr, {0, 0, 0}, {1, 1, 1});
        rootRatios_ = rootRatios();
    }
    void add(const PointRecord& point) { add(*root_, point); }
    bool finish();
    std::string write(const ReferenceStatistics& statistics);

    unsigned long long lost = 0;

private:
    std::unique_ptr<Node> makeNode(const Box& box, Node* parent, Words3 triplet, Words3 grid);
    Words3 rootRatios() const;
    Words3 gridFor(const Node& node) const;
    void add(Node& node, const PointRecord& point);
    void addToChildren(Node& node, const PointRecord& point);
    bool split(Node& node);
    void collectEndNodes(Node& node, std::vector<Node*>& endNodes);
    double spacing(const Node& node) const;
    void fillParents();

    ReferenceSettings settings_;
    std::unique_ptr<Node> root_;
    Words3 rootRatios_{};
    std::vector<std::vector<Node*>> levels_;
    double minimumDistance_ = 1e45;
};

std::unique_ptr<Node> Model::makeNode(const Box& box, Node* parent, Words3 triplet, Words3 grid) {
    auto node = std::make_unique<Node>();
    node->box = box;
    node->parent = parent;
    if (parent != nullptr) {
        node->path = parent->path;
        node->gridPath = parent->gridPath;
    }
    node->path.push_back(triplet);
    node->gridPath.push_back(grid);
    if (levels_.size() <= node->level()) levels_.emplace_back();
    levels_[node->level()].push_back(node.get());
    return node;
}

/// At most 20, which is where the cap of the grid cuts them anyway.
Word ratio(double side, double shortest, double rounding) {
    return static_cast<Word>(std::min(20.0, std::trunc(side / shortest + rounding)));
}

Words3 Model::rootRatios() const {
    const double dx = root_->box.side(0), dy = root_->box.side(1), dz = root_->box.side(2);
    Words3 r{1, 1, 1};
    if (dy >= dx && dz >= dx)
        r = {1, ratio(dy, dx, 0.4999), ratio(dz, dx, 0.4999)};
    else if (dx >= dy && dz >= dy)
        r = {ratio(dx, dy, 0.4999), 1, ratio(dz, dy, 0.4999)};
    else
        r = {ratio(dx, dz, 0.49999), ratio(dy, dz, 0.49999), 1};
    return r == Words3{1, 1, 1} ? Words3{2, 2, 2} : r;
}

Words3 Model::gridFor(const Node& node) const {
    if (!settings_.isKdTree) return node.parent == nullptr ? rootRatios_ : Words3{2, 2, 2};
    const double dx = node.box.side(0), dy = node.box.side(1), dz = node.box.side(2);
    if (dx >= dy && dx >= dz) return {2, 1, 1};
    if (dy >= dx && dy >= dz) return {1, 2, 1};
    return {1, 1, 2};
}

void Model::add(Node& node, const PointRecord& point) {
    if (!node.children.empty()) {
        addToChildren(node, point);
        return;
    }
    node.points.push_back(point);
    if (node.points.size() < settings_.maxPointsPerNode) return;
    if (node.level() >= settings_.maxLevel) return;
    if (!split(node)) return;
    std::vector<PointRecord> points;
    points.swap(node.points);
    for (const PointRecord& p : points) addToChildren(node, p);
}

void Model::addToChildren(Node& node, const PointRecord& point) {
    bool isTaken = false;
    for (auto& child : node.children) {
        if (!child->box.contains(point)) continue;
        add(*child, point);
        isTaken = true;
    }
    if (!isTaken) ++lost;
}

/// The cells of a node, unless its coordinates are too coarse for that many different ones.
bool Model::split(Node& node) {
    const Words3 grid = gridFor(node);
    Doubles3 cell{};
    std::array<std::vector<double>, 3> bounds;
    for (std::size_t axis = 0; axis < 3; ++axis) {
        cell[axis] = node.box.side(axis) / static_cast<double>(grid[axis]);
        for (Word i = 0; i < grid[axis]; ++i)
            bounds[axis].push_back(node.box.min[axis] + static_cast<double>(i) * cell[axis]);
        bounds[axis].push_back(node.box.max[axis]);
        for (std::size_t i = 1; i < bounds[axis].size(); ++i)
            if (!(bounds[axis][i - 1] < bounds[axis][i])) return false;
    }
    node.grid = grid;
    node.cell = cell;
    for (Word z = 0; z < grid[2]; ++z)
        for (Word y = 0; y < grid[1]; ++y)
            for (Word x = 0; x < grid[0]; ++x) {
                Box box;
                box.min = {bounds[0][x], bounds[1][y], bounds[2][z]};
                box.max = {bounds[0][x + 1], bounds[1][y + 1], bounds[2][z + 1]};
                node.children.push_back(makeNode(box, &node, {x, y, z}, grid));
            }
    return true;
}

void Model::collectEndNodes(Node& node, std::vector<Node*>& endNodes) {
    for (auto& child : node.children) collectEndNodes(*child, endNodes);
    if (node.children.empty() && !node.points.empty()) endNodes.push_back(&node);
}

bool Model::finish() {
    std::vector<Node*> endNodes;
    collectEndNodes(*root_, endNodes);
    if (endNodes.empty()) return false;

    const auto density = [](const Node* node) {
        const Box& box = node->box;
        return static_cast<double>(node->points.size()) / (box.side(0) * box.side(1) * box.side(2));
    };
    const Node* densest = endNodes.front();
    for (const Node* node : endNodes)
        if (density(node) > density(densest)) densest = node;
    const double s = densest->box.shortest();
    minimumDistance_ =
        std::max(0.0025, std::cbrt(s * s * s / static_cast<double>(densest->points.size())));

    const std::size_t deepest = levels_.size() - 1;
    for (Node* node : endNodes) {
        while (node->level() < deepest) {
            node->grid = {1, 1, 1};
            node->cell = {node->box.side(0), node->box.side(1), node->box.side(2)};
            node->children.push_back(makeNode(node->box, node, {0, 0, 0}, {1, 1, 1}));
            Node* child = node->children.back().get();
            child->points.swap(node->points);
            child->grid = node->grid;
            child->cell = node->cell;
            node = child;
        }
    }
    fillParents();
    return true;
}

double Model::spacing(const Node& node) const {
    const auto levelsAbove = static_cast<double>(levels_.size() - node.level() - 1);
    const double growth = settings_.isKdTree ? std::cbrt(2.0) : 2.0;
    const double wanted = minimumDistance_ * std::pow(growth, levelsAbove);
    const double c = std::min(node.box.shortest(), wanted);
    double largestCell = 0;
    for (std::size_t axis = 0; axis < 3; ++axis) {
        const double side = node.box.side(axis);
        largestCell = std::max(largestCell, side / std::clamp(side / c, 1.0, 400.0));
    }
    return std::min(node.box.shortest(), largestCell);
}

void Model::fillParents() {
    for (std::size_t level = levels_.size() - 1; level > 0; --level) {
        for (Node* node : levels_[level]) {
            node->distance = spacing(*node);
            node->parent->distance = node->distance * (settings_.isKdTree ? std::cbrt(3.0) : 3.0);
            for (const PointRecord& point : thinned(node->points, settings_.isKdTree))
                node->parent->points.push_back(point);
        }
    }
}

class Bytes {
public:
    std::string text;
    template <class... T>
    void put(const T&... values) {
        (text.append(reinterpret_cast<const char*>(&values), sizeof values), ...);
    }
    void put(const Words3& words) { put(words[0], words[1], words[2]); }
    void put(const Doubles3& values) { put(values[0], values[1], values[2]); }
    Word position() const { return text.size(); }
};

std::string Model::write(const ReferenceStatistics& statistics) {
    // The positions are known only after a first writing; the second one gets them right.
    Word recordsStart = 0, pointsStart = 0;
    Bytes out;
    for (int round = 0; round < 2; ++round) {
        out = {};
        Word largest = 0;
        for (const Node* node : levels_.back())
            largest = std::max<Word>(largest, node->points.size());
        out.put(Word{9}, Word{settings_.isKdTree ? 1u : 0u}, minimumDistance_, largest, false);
        out.put(statistics.maxRed, statistics.maxGreen, statistics.maxBlue);
        out.put(statistics.maxIntensity, 1.0, 1.0, 1.0, 0.0, 0.0, 0.0);
        out.put(settings_.hostValue, recordsStart, pointsStart, Word{0}, Word{PointRecord::size});
        out.put(Word{levels_.size()});
        for (const auto& level : levels_) out.put(Word{level.size()});
        recordsStart = out.position();
        for (const auto& level : levels_) {
            for (Node* node : level) {
                node->record = out.position();
                out.put(Word{node->level()}, node->distance);
                for (const Words3& triplet : node->path) out.put(triplet);
                for (const Words3& triplet : node->gridPath) out.put(triplet);
                out.put(node->box.min);
                out.put(node->box.max);
                out.put(Word{node->points.size()});
                out.put(node->grid);
                for (std::size_t axis = 0; axis < 3; ++axis)
                    for (Word i = 0; i < node->grid[axis]; ++i) out.put(node->cell[axis]);
                out.put(node->record, node->block, node->block + 16);
                out.put(node->parent ? node->parent->record : Word{0});
                out.put(node->parent ? node->parent->block : Word{0});
                for (const auto& child : node->children) out.put(child->record, child->block);
                const Word entries = node->grid[0] * node->grid[1] * node->grid[2];
                for (Word i = node->children.size(); i < entries; ++i) out.put(Word{0}, Word{0});
            }
        }
        pointsStart = out.position();
        for (const auto& level : levels_) {
            for (Node* node : level) {
                node->block = out.position();
                out.put(Word{node->level()}, Word{node->points.size()});
                for (PointRecord point : node->points) {
                    if (statistics.is16bitColour) point.narrowColours();
                    out.text += point.bytes();
                }
            }
        }
    }
    return out.text;
}

}  // namespace

ReferenceStatistics statisticsOf(const std::vector<std::vector<PointRecord>>& scans,
                                 std::size_t firstBatch, bool lastScanOnly) {
    ReferenceStatistics statistics;
    const auto& first = scans.front();
    for (std::size_t i = 0; i < std::min(firstBatch, first.size()); ++i)
        if (first[i].isFinite() && (first[i].red | first[i].green | first[i].blue) >= 256)
            statistics.is16bitColour = true;
    for (std::size_t i = lastScanOnly ? scans.size() - 1 : 0; i < scans.size(); ++i) {
        for (const PointRecord& point : scans[i]) {
            if (!point.isFinite()) continue;
            statistics.maxRed = std::max(statistics.maxRed, point.red);
            statistics.maxGreen = std::max(statistics.maxGreen, point.green);
            statistics.maxBlue = std::max(statistics.maxBlue, point.blue);
            statistics.maxIntensity = std::max(statistics.maxIntensity, point.intensity);
        }
    }
    return statistics;
}

std::string referenceTreeFile(const std::vector<std::vector<PointRecord>>& scans,
                              const ReferenceStatistics& statistics,
                              const ReferenceSettings& settings, unsigned long long* pointsLost) {
    Box box;
    bool isAnyFinite = false;
    for (const auto& scan : scans)
        for (const PointRecord& point : scan)
            if (point.isFinite()) box.include(point), isAnyFinite = true;
    if (!isAnyFinite) return {};
    box.addMargin(box.shortest() / 10000);
    box.addMargin(0.0001);

    Model model(settings);
    model.start(box);
    for (const auto& scan : scans)
        for (const PointRecord& point : scan)
            if (point.isFinite()) model.add(point);
    if (pointsLost != nullptr) *pointsLost = model.lost;
    return model.finish() ? model.write(statistics) : std::string();
}

}  // namespace vpc::test
