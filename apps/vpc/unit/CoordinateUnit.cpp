#include "vpc/unit/CoordinateUnit.h"

#include <algorithm>
#include <cmath>

namespace vpc {

bool CoordinateUnit::IsSameAs(const CoordinateUnit& other) const {
    constexpr double tolerance = 1e-9;
    return std::abs(metres - other.metres) <= tolerance * std::max(metres, other.metres);
}

CoordinateUnit surveyFoot() {
    return {"US survey foot", 1200.0 / 3937.0};
}

}  // namespace vpc
