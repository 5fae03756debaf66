#pragma once

#include <string>
#include <utility>
#include <vector>

#include "platform/OdGePoint3d.h"

namespace vpc {

/// What a view update has shown.
struct ViewReport {
    unsigned long long visiblePoints = 0;
    unsigned long long visibleNodes = 0;
    unsigned long long selectedLevel = 0;
    unsigned long long totalPoints = 0;
    /// Slots of the point buffers.
    unsigned long long capacity = 0;
    OdGePoint3d minimum;
    OdGePoint3d maximum;
    /// Nodes and points of every level.
    std::vector<std::pair<unsigned long long, unsigned long long>> levels;
    double updateSeconds = 0.0;

    std::string ToJson() const;
    std::string ToText() const;
};

}  // namespace vpc
