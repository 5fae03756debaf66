#include "vpc/view/ShownOptions.h"

#include <limits>

#include <CLI/CLI.hpp>

#include "vpc/view/LoadedPointSet.h"

namespace vpc {

namespace {

/// Buffers with fewer slots are never made.
constexpr unsigned long long leastBudget = PcCoreVisibleNodeManager::smallestCapacity;
/// The host's variable has 32 bits.
constexpr unsigned long long mostBudget = std::numeric_limits<int>::max();

CLI::App& withBudget(CLI::App& options, unsigned long long& budget, std::string& density) {
    options
        .add_option("--budget", budget,
                    "Points to show at most, as the host's variable POINTCLOUDPOINTMAX says")
        ->check(CLI::Range(leastBudget, mostBudget))
        ->capture_default_str()
        ->type_name("N");
    options.add_option("--density", density, "full, or low: no more than a fifth of the budget")
        ->check(CLI::IsMember({"low", "full"}, CLI::ignore_case))
        ->capture_default_str()
        ->type_name("DENSITY");
    return options;
}

}  // namespace

ShownOptions::ShownOptions(CLI::App& options)
    : level_(withBudget(options, budget_, densityText_),
             "The level to show, if the budget suffices; 0 is the coarsest. Default: the deepest "
             "for which it does"),
      cuts_(options) {
}

void ShownOptions::SetUp(GiPointSetDefinition& points) const {
    const bool low = CLI::detail::to_lower(densityText_) == "low";
    points.setDrawDensity(low ? GiPc_DrawDensity_Low : GiPc_DrawDensity_Full);
    cuts_.SetUp(points);
}

void ShownOptions::SetLevel(LoadedPointSet& points) const {
    if (const auto level = level_.Read(points.Levels())) points.SetLevel(*level);
}

}  // namespace vpc
