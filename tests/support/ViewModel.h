#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "support/TreeFile.h"

namespace vpc::test {

// Works out what a view of a tree file has to show, by brute force and without the library.

inline double dot(const Doubles3& a, const Doubles3& b) {
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}
inline Doubles3 cross(const Doubles3& a, const Doubles3& b) {
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}
/// a + f b
inline Doubles3 moved(const Doubles3& a, const Doubles3& b, double f) {
    return {a[0] + f * b[0], a[1] + f * b[1], a[2] + f * b[2]};
}
inline double distance(const Doubles3& a, const Doubles3& b) {
    const Doubles3 d = moved(a, b, -1);
    return std::sqrt(dot(d, d));
}
inline Doubles3 unit(const Doubles3& a) {
    return moved({}, a, 1 / std::sqrt(dot(a, a)));
}

struct ModelCamera {
    Doubles3 eye{}, target{}, up{};
    double width = 0, height = 0;
    bool perspective = false;
};

/// A rotation by rows, and a translation after it.
struct Pose {
    std::array<Doubles3, 3> rows{{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};
    Doubles3 shift{};

    Doubles3 toWorld(const Doubles3& p) const {
        return {dot(rows[0], p) + shift[0], dot(rows[1], p) + shift[1], dot(rows[2], p) + shift[2]};
    }
    ModelCamera placed(const ModelCamera& c) const {
        return {toWorld(c.eye), toWorld(c.target), moved(toWorld(c.up), shift, -1),
                c.width,        c.height,          c.perspective};
    }
    Doubles3 toTree(const Doubles3& p) const {
        const Doubles3 d = moved(p, shift, -1);
        return moved(moved(moved({}, rows[0], d[0]), rows[1], d[1]), rows[2], d[2]);
    }
};

/// A view or pick volume as the half spaces that it lies in, for points in the tree's frame.
class ModelVolume {
public:
    /// \param reach how far the volume goes from the camera, along the view direction
    /// \param through  a point that the volume's axis leads through
    ModelVolume(const ModelCamera& camera, const Doubles3& through, double width, double height,
                double reach, const Pose& pose)
        : pose_(pose), width_(width), height_(height), reach_(reach) {
        const Doubles3 forward = unit(moved(camera.target, camera.eye, -1));
        const Doubles3 up = unit(camera.up);
        const Doubles3 right = cross(forward, up);
        const Doubles3 toAxis = moved(through, camera.eye, -1);
        const double depth = dot(toAxis, forward);
        start_ = camera.perspective ? camera.eye : moved(through, forward, -depth);
        const Doubles3 step = camera.perspective ? moved({}, toAxis, 1 / depth) : forward;
        if (camera.perspective) growth_ = 1 / distance(camera.target, camera.eye);
        // A point is start + r right + u up + t step: what r, u and t are by Cramer's rule.
        const double volume = dot(right, cross(up, step));
        toR_ = moved({}, cross(up, step), 1 / volume);
        toU_ = moved({}, cross(step, right), 1 / volume);
        toT_ = moved({}, cross(right, up), 1 / volume);
    }
    bool holds(const Doubles3& p) const { return meets(p, p); }
    /// Whether no half space leaves out all of the box's corners.
    bool meets(const Doubles3& low, const Doubles3& high) const {
        std::array<bool, 6> any{};
        for (int i = 0; i < 8; ++i) {
            const Doubles3 d =
                moved(pose_.toWorld({i & 1 ? low[0] : high[0], i & 2 ? low[1] : high[1],
                                     i & 4 ? low[2] : high[2]}),
                      start_, -1);
            const double r = dot(d, toR_), u = dot(d, toU_), t = dot(d, toT_);
            const double size = (growth_ > 0 ? growth_ * t : 1) / 2;
            const std::array inside{
                size * width_ - r, size * width_ + r,    size * height_ - u, size * height_ + u,
                reach_ - t,        growth_ > 0 ? 0.0 : t};  // a pyramid has no near side
            for (std::size_t side = 0; side < 6; ++side) any[side] = any[side] || inside[side] >= 0;
        }
        return std::all_of(any.begin(), any.end(), [](bool met) { return met; });
    }

private:
    Pose pose_;
    double width_, height_, reach_;
    /// Share of the size at the target's distance by which the volume grows with every unit.
    double growth_ = 0;
    Doubles3 start_{}, toR_{}, toU_{}, toT_{};
};

struct ModelSlot {
    Doubles3 world{};
    std::uint32_t colour = 0;
    double size = 0;
};

/// A node whose points are shown, and its place among the slots: `last` belongs to it.
struct ModelNode {
    const TreeNode* node = nullptr;
    std::size_t first = 0, last = 0;
};

struct ModelView {
    Word level = 0;
    std::size_t selected = 0;
    std::vector<ModelNode> nodes;
    std::vector<ModelSlot> slots;
};

/// The tree of a file, viewed.
class ViewModel {
public:
    explicit ViewModel(const TreeFile& file) : levels(file.levels) {
        // A loaded root is a little larger than the file's.
        TreeNode& root = levels.front().front();
        for (std::size_t axis = 0; axis < 3; ++axis) {
            const double margin = 0.0001 * (root.boxMax[axis] - root.boxMin[axis]);
            root.boxMin[axis] -= margin;
            root.boxMax[axis] += margin;
        }
    }

    std::vector<std::vector<TreeNode>> levels;
    Word capacity = 0;
    bool lowDensity = false;
    Pose pose;
    /// Whether a point, in the tree's frame, is shown at all.
    std::function<bool(const Doubles3&)> filter = [](const Doubles3&) { return true; };

    static Doubles3 centre(const TreeNode& node) {
        return moved(node.boxMin, moved(node.boxMax, node.boxMin, -1), 0.5);
    }
    double reach(const ModelCamera& camera) const {
        return 3 * distance(camera.eye, centre(levels.front().front()));
    }
    /// \param result  what the buffers hold before
    ModelView view(const ModelCamera& camera, ModelView result = {}) const {
        const ModelVolume seen(camera, camera.target, camera.width, camera.height, reach(camera),
                               pose);
        result.level = 0;
        result.selected = 0;
        const Word threshold = lowDensity ? capacity / 5 : capacity - 1;
        for (Word level = 0; level < levels.size(); ++level) {
            Word points = 0;
            for (const TreeNode& node : levels[level])
                if (seen.meets(node.boxMin, node.boxMax)) points += node.pointCount;
            if (points >= threshold) break;
            result.level = level;
        }
        for (const TreeNode& node : levels[result.level]) {
            if (!seen.meets(node.boxMin, node.boxMax)) continue;
            ++result.selected;
            if (result.slots.size() + node.pointCount < capacity) fill(node, result);
        }
        return result;
    }

    /// The coordinates that a pick finds; none where it finds nothing.
    std::optional<Doubles3> pick(const ModelView& view, const ModelCamera& camera,
                                 const Doubles3& at, double width, double height) const {
        const ModelVolume box(camera, at, width, height, reach(camera), pose);
        std::vector<ModelNode> met;
        for (const ModelNode& shown : view.nodes)
            if (box.meets(shown.node->boxMin, shown.node->boxMax)) met.push_back(shown);
        std::sort(met.begin(), met.end(), [&](const ModelNode& a, const ModelNode& b) {
            return distance(centre(*a.node), camera.eye) < distance(centre(*b.node), camera.eye);
        });
        for (const ModelNode& shown : met)
            for (std::size_t slot = shown.first; slot < shown.last; ++slot)
                if (box.holds(pose.toTree(view.slots[slot].world))) return view.slots[slot].world;
        return std::nullopt;
    }

private:
    void fill(const TreeNode& node, ModelView& result) const {
        const std::size_t first = result.slots.size();
        for (const PointRecord& p : node.points) {
            const Doubles3 place{p.x, p.y, p.z};
            if (!filter(place)) continue;
            result.slots.push_back(
                {pose.toWorld(place),
                 0xC2000000U | (p.red & 0xFFU) << 16U | (p.green & 0xFFU) << 8U | (p.blue & 0xFFU),
                 p.scannerDistance >= 1 ? p.scannerDistance : 1});
        }
        if (result.slots.size() > first)
            result.nodes.push_back({&node, first, result.slots.size() - 1});
    }
};

}  // namespace vpc::test
