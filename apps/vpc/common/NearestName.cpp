#include "vpc/common/NearestName.h"

#include <algorithm>
#include <cstddef>

namespace vpc {

namespace {

std::size_t distanceBetween(const std::string& a, const std::string& b) {
    std::vector<std::vector<std::size_t>> steps(a.size() + 1,
                                                std::vector<std::size_t>(b.size() + 1));
    for (std::size_t i = 0; i <= a.size(); ++i) steps[i][0] = i;
    for (std::size_t j = 0; j <= b.size(); ++j) steps[0][j] = j;
    for (std::size_t i = 1; i <= a.size(); ++i) {
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t replaced = steps[i - 1][j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1);
            steps[i][j] = std::min({steps[i - 1][j] + 1, steps[i][j - 1] + 1, replaced});
            const bool swapped = i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1];
            if (swapped) steps[i][j] = std::min(steps[i][j], steps[i - 2][j - 2] + 1);
        }
    }
    return steps[a.size()][b.size()];
}

}  // namespace

std::string nearestName(const std::string& typed, const std::vector<std::string>& names) {
    std::string nearest;
    std::size_t least = typed.size() / 3 + 1;
    for (const std::string& name : names) {
        const std::size_t distance = distanceBetween(typed, name);
        if (distance >= least) continue;
        least = distance;
        nearest = name;
    }
    return nearest;
}

}  // namespace vpc
