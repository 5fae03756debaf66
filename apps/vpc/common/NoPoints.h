#pragma once

#include <string>

namespace vpc {

struct PlacedBox;

/// Why a command finds no points: sentences with the figures that help the user on. Every command
/// that shows, picks or writes points says it in these words.
class NoPoints {
public:
    static std::string InFile(const std::string& file);
    /// \param points those that the cuts were applied to, as "300 points"
    /// \param box    where all points of the file lie
    static std::string AfterCuts(const std::string& points, const PlacedBox& box);
    static std::string InSight(const PlacedBox& box);
    /// \param coarsest points of the level that needs the smallest budget
    /// \param least    the smallest budget that shows them
    static std::string WithinBudget(unsigned long long budget, unsigned long long coarsest,
                                    unsigned long long least);
};

}  // namespace vpc
