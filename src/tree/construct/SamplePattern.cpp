#include "tree/construct/SamplePattern.h"

#include <bit>

namespace vpc {

SamplePattern::SamplePattern(double keepFraction) : sampler_(keepFraction, false, 0) {
}

unsigned long long SamplePattern::KeptOf(unsigned long long nodeCount) {
    if (nodeCount < smallestSampled) return nodeCount;
    const unsigned long long drawn = DrawnOf(nodeCount);
    return drawn != 0 ? drawn : 1;
}

unsigned long long SamplePattern::DrawnOf(unsigned long long count) {
    Extend(count);
    const unsigned long long word = count / 64;
    const unsigned long long below = (1ULL << (count % 64)) - 1;
    return keptBefore_[word] + static_cast<unsigned>(std::popcount(words_[word] & below));
}

void SamplePattern::Extend(unsigned long long count) {
    while (words_.size() <= count / 64) {
        unsigned long long word = 0;
        for (unsigned bit = 0; bit < 64; ++bit)
            word |= static_cast<unsigned long long>(sampler_.KeepNext()) << bit;
        words_.push_back(word);
        keptBefore_.push_back(keptInAll_);
        keptInAll_ += static_cast<unsigned>(std::popcount(word));
    }
}

}  // namespace vpc
