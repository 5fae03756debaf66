#include "vpc/common/NoPoints.h"

#include "vpc/common/PlacedBox.h"

namespace vpc {

std::string NoPoints::InFile(const std::string& file) {
    return "'" + file + "' holds no points";
}

std::string NoPoints::AfterCuts(const std::string& points, const PlacedBox& box) {
    return "the sections and clipping regions leave none of the " + points +
           "; all points lie within " + box.Text();
}

std::string NoPoints::InSight(const PlacedBox& box) {
    return "the camera sees none of the points, which lie within " + box.Text() +
           "; change --eye, --target and --field, or leave them out to see all";
}

std::string NoPoints::WithinBudget(unsigned long long budget, unsigned long long coarsest,
                                   unsigned long long least) {
    return "no points are shown: the coarsest level has " + std::to_string(coarsest) +
           ", more than a budget of " + std::to_string(budget) + " allows; give --budget " +
           std::to_string(least) + " or more";
}

}  // namespace vpc
