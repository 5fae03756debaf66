#include "vpc/Findings.h"

#include <cstdio>

namespace vpc {

namespace {
constexpr unsigned long long printedOfAKind = 100;
}

void Findings::Add(const std::string& kind, const std::string& text) {
    if (++counts_[kind] <= printedOfAKind) std::printf("%s: %s\n", kind.c_str(), text.c_str());
}

void Findings::PrintSummary() const {
    unsigned long long all = 0;
    for (const auto& [kind, count] : counts_) {
        all += count;
        if (count > printedOfAKind)
            std::printf("%s: %llu more of this kind\n", kind.c_str(), count - printedOfAKind);
    }
    if (all == 0)
        std::printf("no faults found\n");
    else
        std::printf("%llu %s found\n", all, all == 1 ? "fault" : "faults");
}

}  // namespace vpc
