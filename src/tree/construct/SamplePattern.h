#pragma once

#include <vector>

#include "tree/construct/VpcRandomSampler.h"

namespace vpc {

/// Which points the random sampling keeps when every node's sampling starts from the same seed.
///
/// The draws then depend on a point's place in its node alone, never on the point. So one pattern,
/// drawn once, serves all nodes, and how many points a node hands to its parent is known before
/// any point is read.
class SamplePattern {
public:
    explicit SamplePattern(double keepFraction);

    /// How many points of a node with `nodeCount` points its parent receives.
    unsigned long long KeptOf(unsigned long long nodeCount);

    /// Calls `keep(i)` in rising order for those of the points [begin, end) of a node with
    /// `nodeCount` points that its parent receives.
    template <class Keep>
    void ForEachKept(unsigned long long nodeCount, unsigned long long begin, unsigned long long end,
                     const Keep& keep) {
        if (nodeCount < smallestSampled || DrawnOf(nodeCount) == 0) {
            const unsigned long long kept = KeptOf(nodeCount);
            for (unsigned long long i = begin; i < end && i < kept; ++i) keep(i);
            return;
        }
        for (unsigned long long i = begin; i < end; ++i)
            if ((words_[i / 64] >> (i % 64) & 1U) != 0) keep(i);
    }

    /// A node with fewer points hands all of them on.
    static constexpr unsigned long long smallestSampled = 3;

private:
    /// How many of the first `count` draws keep their point.
    unsigned long long DrawnOf(unsigned long long count);
    void Extend(unsigned long long count);

    VpcRandomSampler sampler_;
    std::vector<unsigned long long> words_;
    /// Kept draws before each word.
    std::vector<unsigned long long> keptBefore_;
    unsigned long long keptInAll_ = 0;
};

}  // namespace vpc
