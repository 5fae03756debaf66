#include "core/util/DirectRanges.h"

#include <algorithm>
#include <utility>

namespace vpc {

namespace {

/// Some for every level of a deep tree.
constexpr std::size_t mostEnded = 16;

}  // namespace

DirectRange DirectRanges::Begin(unsigned long long position) {
    const auto before = std::find_if(ended_.begin(), ended_.end(), [&](const DirectRange& range) {
        return range.End() == position;
    });
    if (before == ended_.end()) return {*writer_, position};
    DirectRange range = std::move(*before);
    ended_.erase(before);
    return range;
}

void DirectRanges::End(DirectRange range) {
    ended_.push_back(std::move(range));
    if (ended_.size() <= mostEnded) return;
    ended_.front().Finish();
    ended_.erase(ended_.begin());
}

void DirectRanges::Finish() {
    for (DirectRange& range : ended_) range.Finish();
    ended_.clear();
    writer_->Finish();
}

}  // namespace vpc
