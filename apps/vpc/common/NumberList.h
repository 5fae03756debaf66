#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vpc {

/// Lists of numbers as they are given on the command line: "1.5,-2,3e4", with a decimal point
/// whatever the locale says.
class NumberList {
public:
    /// The numbers between the commas; nothing where one of them is not a finite number.
    static std::optional<std::vector<double>> Parse(std::string_view text);
    /// The same for a list of exactly `count` numbers. Throws CommandUsageError, which names
    /// `option` and shows `form`, for any other text.
    static std::vector<double> Require(const std::string& text, std::size_t count,
                                       const std::string& option, const std::string& form);
};

}  // namespace vpc
