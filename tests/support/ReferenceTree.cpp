#include "support/ReferenceTree.h"

#include <algorithm>
#include <map>
#include <memory>
#include <random>

#include "support/TreeFile.h"

namespace vpc::test {

namespace {

struct Box {
    Doubles3 min{1e65, 1e65, 1e65};
    Doubles3 max{-1e65, -1e65, -1e65};

    Doubles3 sides() const { return {max[0] - min[0], max[1] - min[1], max[2] - min[2]}; }
    double shortest() const {
        const Doubles3 s = sides();
        return std::min({s[0], s[1], s[2]});
    }
    void include(const PointRecord& p) {
        for (std::size_t axis = 0; axis < 3; ++axis) {
            min[axis] = std::min(min[axis], p.coordinate(axis));
            max[axis] = std::max(max[axis], p.coordinate(axis));
        }
    }
    void addMargin(double margin) {
        for (std::size_t axis = 0; axis < 3; ++axis) min[axis] -= margin, max[axis] += margin;
    }
    bool contains(const PointRecord& p) const {
        for (std::size_t axis = 0; axis < 3; ++axis)
            if (!(min[axis] <= p.coordinate(axis) && p.coordinate(axis) < max[axis])) return false;
        return true;
    }
};

struct Node {
    Box box;
    Node* parent = nullptr;
    std::vector<Words3> path, gridPath;
    Words3 grid{};
    std::vector<std::unique_ptr<Node>> children;
    std::vector<PointRecord> points;
    double distance = 0;

    std::size_t level() const { return path.size() - 1; }
    double count() const { return static_cast<double>(points.size()); }
};

/// The points that a node hands to its parent when they are drawn at random.
std::vector<PointRecord> drawn(const std::vector<PointRecord>& points, bool isKdTree) {
    std::mt19937 engine(0);
    std::uniform_real_distribution<double> draw(0, isKdTree ? 2 : 4);
    std::vector<PointRecord> kept;
    for (const PointRecord& point : points)
        if (draw(engine) < 1.0) kept.push_back(point);
    if (kept.empty()) kept.push_back(points.front());
    return kept;
}

/// For every cell the point that is nearest to its centre; cells are about as wide as `spacing`.
std::vector<PointRecord> nearestToCells(const std::vector<PointRecord>& points, double spacing) {
    Box box;
    for (const PointRecord& point : points) box.include(point);
    Doubles3 sides = box.sides();
    std::sort(sides.begin(), sides.end());
    const auto* side = std::find_if(sides.begin(), sides.end(), [](double s) { return s > 0; });
    box.addMargin((side != sides.end() ? *side : sides.back()) / 5000);
    // The cells by z, y and x, each with its nearest point so far and that point's distance.
    std::map<Doubles3, std::pair<double, const PointRecord*>> cells;
    for (const PointRecord& point : points) {
        Doubles3 key{};
        double squares = 0;
        for (std::size_t axis = 0; axis < 3; ++axis) {
            const double extent = box.sides()[axis];
            const double count = std::max(1.0, std::trunc(extent / spacing + 0.5));
            const double size = extent / count;
            const double from = point.coordinate(axis) - box.min[axis];
            const double cell = std::min(std::trunc(from / size), count - 1);
            const double centre = box.min[axis] + (cell + 0.5) * size;
            squares += (point.coordinate(axis) - centre) * (point.coordinate(axis) - centre);
            key[2 - axis] = cell;
        }
        const std::pair candidate(std::sqrt(squares), &point);
        auto& nearest = cells.try_emplace(key, candidate).first->second;
        if (candidate.first < nearest.first) nearest = candidate;
    }
    std::vector<PointRecord> kept;
    for (const auto& [cell, nearest] : cells) kept.push_back(*nearest.second);
    return kept;
}

class Model {
public:
    Model(const ReferenceSettings& settings, const Box& dataBox)
        : settings_(settings), root_(makeNode(dataBox, nullptr, {0, 0, 0}, {1, 1, 1})) {}

    void add(const PointRecord& point) { add(*root_, point); }
    bool finish() {
        std::vector<Node*> endNodes;
        collectEndNodes(*root_, endNodes);
        if (endNodes.empty()) return false;
        const auto isSparser = [](const Node* a, const Node* b) {
            const Doubles3 p = a->box.sides(), q = b->box.sides();
            return a->count() / (p[0] * p[1] * p[2]) < b->count() / (q[0] * q[1] * q[2]);
        };
        const Node& densest = **std::max_element(endNodes.begin(), endNodes.end(), isSparser);
        const double s = densest.box.shortest();
        minimumDistance_ = std::max(0.0025, std::cbrt(s * s * s / densest.count()));
        for (Node* node : endNodes) {
            while (node->level() + 1 < levels_.size()) {
                node->grid = {1, 1, 1};
                node->children.push_back(makeNode(node->box, node, {0, 0, 0}, {1, 1, 1}));
                Node* child = node->children.back().get();
                child->points.swap(node->points);
                child->grid = node->grid;
                node = child;
            }
        }
        fillParents();
        return true;
    }
    std::string write(const ReferenceStatistics& statistics) {
        TreeFile file;
        file.treeType = settings_.isKdTree ? 1 : 0;
        file.minimumDistance = minimumDistance_;
        file.maxRed = statistics.maxRed;
        file.maxGreen = statistics.maxGreen;
        file.maxBlue = statistics.maxBlue;
        file.maxIntensity = statistics.maxIntensity;
        file.hostValue = settings_.hostValue;
        for (const auto& level : levels_) {
            file.levels.emplace_back();
            for (Node* node : level) {
                TreeNode& stored = file.levels.back().emplace_back();
                stored.distance = node->distance;
                stored.path = node->path, stored.gridPath = node->gridPath;
                stored.boxMin = node->box.min, stored.boxMax = node->box.max;
                stored.grid = node->grid;
                stored.points.swap(node->points);
                if (statistics.is16bitColour)
                    for (PointRecord& point : stored.points) point.narrowColours();
            }
        }
        return file.bytes();
    }

    unsigned long long lost = 0;

private:
    std::unique_ptr<Node> makeNode(const Box& box, Node* parent, Words3 triplet, Words3 grid) {
        auto node = std::make_unique<Node>();
        node->box = box;
        node->parent = parent;
        if (parent != nullptr) node->path = parent->path, node->gridPath = parent->gridPath;
        node->path.push_back(triplet);
        node->gridPath.push_back(grid);
        if (levels_.size() <= node->level()) levels_.emplace_back();
        levels_[node->level()].push_back(node.get());
        return node;
    }
    Words3 rootRatios() const {
        // Of several shortest axes the first counts.
        const Doubles3 sides = root_->box.sides();
        const auto shortest = std::min_element(sides.begin(), sides.end());
        const double rounding = shortest == sides.end() - 1 ? 0.49999 : 0.4999;
        Words3 ratios{};
        // At most 20, which is where the cap of the grid cuts them anyway.
        for (std::size_t axis = 0; axis < 3; ++axis)
            ratios[axis] = static_cast<Word>(std::min(20.0, sides[axis] / *shortest + rounding));
        return ratios == Words3{1, 1, 1} ? Words3{2, 2, 2} : ratios;
    }
    Words3 gridFor(const Node& node) const {
        if (!settings_.isKdTree) return node.parent == nullptr ? rootRatios() : Words3{2, 2, 2};
        const Doubles3 sides = node.box.sides();
        const auto longest = std::max_element(sides.begin(), sides.end()) - sides.begin();
        Words3 grid{1, 1, 1};
        grid[static_cast<std::size_t>(longest)] = 2;
        return grid;
    }
    void add(Node& node, const PointRecord& point) {
        if (!node.children.empty()) return addToChildren(node, point);
        node.points.push_back(point);
        if (node.points.size() < settings_.maxPointsPerNode) return;
        if (node.level() >= settings_.maxLevel || !split(node)) return;
        std::vector<PointRecord> points;
        points.swap(node.points);
        for (const PointRecord& p : points) addToChildren(node, p);
    }
    void addToChildren(Node& node, const PointRecord& point) {
        bool isTaken = false;
        for (auto& child : node.children) {
            if (!child->box.contains(point)) continue;
            add(*child, point);
            isTaken = true;
        }
        if (!isTaken) ++lost;
    }
    /// The cells of a node, unless its coordinates are too coarse for that many different ones.
    bool split(Node& node) {
        const Words3 grid = gridFor(node);
        Doubles3 cell = node.box.sides();
        std::array<std::vector<double>, 3> bounds;
        for (std::size_t axis = 0; axis < 3; ++axis) {
            cell[axis] /= static_cast<double>(grid[axis]);
            for (Word i = 0; i < grid[axis]; ++i)
                bounds[axis].push_back(node.box.min[axis] + static_cast<double>(i) * cell[axis]);
            bounds[axis].push_back(node.box.max[axis]);
            for (std::size_t i = 1; i < bounds[axis].size(); ++i)
                if (!(bounds[axis][i - 1] < bounds[axis][i])) return false;
        }
        node.grid = grid;
        for (Word z = 0; z < grid[2]; ++z)
            for (Word y = 0; y < grid[1]; ++y)
                for (Word x = 0; x < grid[0]; ++x) {
                    const Box box{{bounds[0][x], bounds[1][y], bounds[2][z]},
                                  {bounds[0][x + 1], bounds[1][y + 1], bounds[2][z + 1]}};
                    node.children.push_back(makeNode(box, &node, {x, y, z}, grid));
                }
        return true;
    }
    void collectEndNodes(Node& node, std::vector<Node*>& endNodes) {
        for (auto& child : node.children) collectEndNodes(*child, endNodes);
        if (node.children.empty() && !node.points.empty()) endNodes.push_back(&node);
    }
    double spacing(const Node& node) const {
        const auto levelsAbove = static_cast<double>(levels_.size() - node.level() - 1);
        const double growth = settings_.isKdTree ? std::cbrt(2.0) : 2.0;
        const double shortest = node.box.shortest();
        const double c = std::min(shortest, minimumDistance_ * std::pow(growth, levelsAbove));
        double largestCell = 0;
        for (const double side : node.box.sides())
            largestCell = std::max(largestCell, side / std::clamp(side / c, 1.0, 400.0));
        return std::min(shortest, largestCell);
    }
    std::vector<PointRecord> thinned(const Node& node) const {
        if (node.points.size() < 3) return node.points;
        if (settings_.thinsByGrid) return nearestToCells(node.points, node.parent->distance);
        return drawn(node.points, settings_.isKdTree);
    }
    void fillParents() {
        for (std::size_t level = levels_.size() - 1; level > 0; --level) {
            for (Node* node : levels_[level]) {
                node->distance = spacing(*node);
                node->parent->distance =
                    node->distance * (settings_.isKdTree ? std::cbrt(3.0) : 3.0);
                for (const PointRecord& point : thinned(*node))
                    node->parent->points.push_back(point);
            }
        }
    }
    ReferenceSettings settings_;
    std::vector<std::vector<Node*>> levels_;
    std::unique_ptr<Node> root_;
    double minimumDistance_ = 1e45;
};

}  // namespace

ReferenceStatistics statisticsOf(const std::vector<std::vector<PointRecord>>& scans,
                                 std::size_t firstBatch) {
    ReferenceStatistics s;
    const auto& first = scans.front();
    for (std::size_t i = 0; i < std::min(firstBatch, first.size()); ++i)
        if (first[i].isFinite() && (first[i].red | first[i].green | first[i].blue) >= 256)
            s.is16bitColour = true;
    for (const auto& scan : scans) {
        for (const PointRecord& point : scan) {
            if (!point.isFinite()) continue;
            s.maxRed = std::max(s.maxRed, point.red);
            s.maxGreen = std::max(s.maxGreen, point.green);
            s.maxBlue = std::max(s.maxBlue, point.blue);
            s.maxIntensity = std::max(s.maxIntensity, point.intensity);
        }
    }
    return s;
}

std::string referenceTreeFile(const std::vector<std::vector<PointRecord>>& scans,
                              const ReferenceStatistics& statistics,
                              const ReferenceSettings& settings, unsigned long long* pointsLost) {
    std::vector<PointRecord> points;
    for (const auto& scan : scans)
        std::copy_if(scan.begin(), scan.end(), std::back_inserter(points),
                     [](const PointRecord& point) { return point.isFinite(); });
    if (points.empty()) return {};
    Box box;
    for (const PointRecord& point : points) box.include(point);
    box.addMargin(box.shortest() / 10000);
    box.addMargin(0.0001);
    Model model(settings, box);
    for (const PointRecord& point : points) model.add(point);
    if (pointsLost != nullptr) *pointsLost = model.lost;
    return model.finish() ? model.write(statistics) : std::string();
}

}  // namespace vpc::test
