#include "vpc/tree/MeasuredBounds.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <numeric>
#include <optional>

#include "core/geometry/NumberText.h"
#include "core/geometry/VpcBoundingBoxAxisAligned.h"
#include "core/util/ValueAt.h"
#include "tree/construct/RootMargins.h"

namespace vpc {

namespace {

constexpr std::size_t axes = 3;
constexpr double infinity = std::numeric_limits<double>::infinity();

VpcBoundingBoxAxisAligned boxOf(const Bounds& bounds) {
    const auto& [low, high] = bounds;
    return {low[0], low[1], low[2], high[0], high[1], high[2]};
}

/// The root's box that the driver makes around points with these bounds.
Bounds rootAround(const Bounds& bounds) {
    VpcBoundingBoxAxisAligned box = boxOf(bounds);
    box.AddMargin(measuredBoxMargin(box));
    box.AddMargin(rootMargin);
    return {{box.minPoint.x, box.minPoint.y, box.minPoint.z},
            {box.maxPoint.x, box.maxPoint.y, box.maxPoint.z}};
}

/// The number with the fewest digits that gives `side` when the two margins are added one after the
/// other; the nearest one where none does.
double withoutMargins(double side, double first, double second) {
    const auto fits = [&](double value) { return (value + first) + second == side; };
    const double nearest = (side - second) - first;
    if (fits(0.0)) return 0.0;
    for (int digits = 1; digits <= std::numeric_limits<double>::max_digits10; ++digits) {
        const std::string text = generalText(nearest, digits);
        double value = 0.0;
        std::from_chars(text.data(), text.data() + text.size(), value);
        if (fits(value)) return value;
    }
    double below = nearest, above = nearest;
    for (int step = 0; step < 4; ++step) {
        below = std::nextafter(below, -infinity);
        above = std::nextafter(above, infinity);
        if (fits(below)) return below;
        if (fits(above)) return above;
    }
    return nearest;
}

/// The bounds around which the driver makes the box `root`; nothing where there are none.
std::optional<Bounds> withoutMargins(const Bounds& root) {
    // The margin depends on the shortest side without it, which is only roughly known at first.
    double margin = (measuredBoxMargin(boxOf(root)) - 2 * rootMargin / 10000) / 1.0002;
    for (int attempt = 0; attempt < 3; ++attempt) {
        Bounds bounds;
        for (std::size_t axis = 0; axis < axes; ++axis) {
            bounds.minimum[axis] = withoutMargins(root.minimum[axis], -margin, -rootMargin);
            bounds.maximum[axis] = withoutMargins(root.maximum[axis], margin, rootMargin);
        }
        if (rootAround(bounds) == root) return bounds;
        margin = measuredBoxMargin(boxOf(bounds));
    }
    return std::nullopt;
}

/// One of a box's six sides.
struct Side {
    std::size_t axis;
    bool isMaximum;

    double Of(const NodeRecord::Coordinates& minimum,
              const NodeRecord::Coordinates& maximum) const {
        return isMaximum ? maximum[axis] : minimum[axis];
    }
    double Of(const Bounds& bounds) const { return Of(bounds.minimum, bounds.maximum); }
    /// Of a damaged box, whose side is no number, it lies beyond all others.
    double Of(const DeepestLevel::Node& node) const {
        const double side = Of(node.boxMinimum, node.boxMaximum);
        return std::isnan(side) ? (isMaximum ? infinity : -infinity) : side;
    }
    /// Whether `a` lies farther out than `b`.
    bool IsBeyond(double a, double b) const { return isMaximum ? a > b : a < b; }
};

constexpr std::array<Side, 2 * axes> sides = {
    {{0, false}, {0, true}, {1, false}, {1, true}, {2, false}, {2, true}}};

/// Reads nodes of the deepest level, none of them twice.
class Search {
public:
    Search(DeepestLevel& level, const DeepestLevel::Watcher& watcher)
        : level_(level), watcher_(watcher), isRead_(level.Nodes().size()) {
        found_.minimum.fill(infinity);
        found_.maximum.fill(-infinity);
    }

    /// Reads all nodes that can hold the outermost point of one side.
    void ReadOutermost(const Side& side) {
        const auto& nodes = level_.Nodes();
        std::vector<std::size_t> order(nodes.size());
        std::iota(order.begin(), order.end(), std::size_t{0});
        std::sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
            return side.IsBeyond(side.Of(nodes[a]), side.Of(nodes[b]));
        });
        for (const std::size_t node : order) {
            if (!side.IsBeyond(side.Of(nodes[node]), side.Of(found_))) return;
            Read(node);
        }
    }
    /// The bounds of the points read so far.
    const Bounds& Found() const { return found_; }

private:
    void Read(std::size_t node) {
        if (isRead_[node]) return;
        isRead_[node] = true;
        level_.ForEachPoint(level_.Nodes()[node], watcher_, [&](const char* record) {
            for (std::size_t axis = 0; axis < axes; ++axis) {
                const auto value = valueAt<double>(record + sizeof(double) * axis);
                found_.minimum[axis] = std::min(found_.minimum[axis], value);
                found_.maximum[axis] = std::max(found_.maximum[axis], value);
            }
        });
    }

    DeepestLevel& level_;
    const DeepestLevel::Watcher& watcher_;
    std::vector<bool> isRead_;
    Bounds found_;
};

/// The side on which the nodes that reach beyond `bounds` have the fewest points.
Side cheapestSide(const DeepestLevel& level, const Bounds& bounds) {
    std::array<unsigned long long, sides.size()> points{};
    for (const DeepestLevel::Node& node : level.Nodes())
        for (std::size_t i = 0; i < sides.size(); ++i)
            if (sides[i].IsBeyond(sides[i].Of(node), sides[i].Of(bounds))) points[i] += node.points;
    return sides[static_cast<std::size_t>(std::min_element(points.begin(), points.end()) -
                                          points.begin())];
}

}  // namespace

Bounds MeasuredBounds::Find(DeepestLevel& level, const Bounds& root,
                            const DeepestLevel::Watcher& watcher) {
    if (level.Nodes().empty()) return root;
    Search search(level, watcher);
    if (const auto expected = withoutMargins(root)) {
        const Side side = cheapestSide(level, *expected);
        search.ReadOutermost(side);
        if (side.Of(search.Found()) == side.Of(*expected)) return *expected;
    }
    for (const Side& side : sides) search.ReadOutermost(side);
    return search.Found();
}

}  // namespace vpc
