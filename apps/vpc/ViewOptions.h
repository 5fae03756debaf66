#pragma once

#include <string>
#include <vector>

#include "view/PcCoreVisibleNodeManager.h"

namespace vpc {

/// What `vpc view` is asked for, beside the camera.
struct ViewOptions {
    std::string file;
    unsigned long long budget = PcCoreVisibleNodeManager::defaultCapacity;
    std::string density = "full";
    std::string stylization = "scan";
    std::string scheme = "Spectrum";
    std::vector<std::string> sections;
    std::vector<std::string> clipCircles;
    std::vector<std::string> clipPolygons;
    std::vector<std::string> matrix;
    std::string image;
    std::string size;
    std::string points;
    bool report = false;
    std::string diagnostics;
};

}  // namespace vpc
