#pragma once

#include <optional>
#include <string>

namespace CLI {
class App;
}

namespace vpc {

/// The option that names a level of a tree file.
class LevelOption {
public:
    /// \param help what the command does with the level
    LevelOption(CLI::App& options, const std::string& help);

    /// The level that was asked for, if any. Throws CommandUsageError where a file of `levels`
    /// levels has none of that number.
    std::optional<unsigned long long> Read(unsigned long long levels) const;

private:
    std::string text_;
};

}  // namespace vpc
