#include "vpc/common/NumberList.h"

#include <charconv>
#include <cmath>

#include "vpc/common/Command.h"
#include "vpc/common/Trimmed.h"

namespace vpc {

namespace {

std::optional<double> number(std::string_view text) {
    text = trimmed(text, " \t");
    // A plus sign in front is usual, but from_chars does not take it.
    if (text.size() > 1 && text[0] == '+' && text[1] != '-') text.remove_prefix(1);
    double value = 0.0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || !std::isfinite(value))
        return std::nullopt;
    return value;
}

}  // namespace

std::optional<std::vector<double>> NumberList::Parse(std::string_view text) {
    std::vector<double> numbers;
    for (;;) {
        const std::size_t comma = text.find(',');
        const auto value = number(text.substr(0, comma));
        if (!value) return std::nullopt;
        numbers.push_back(*value);
        if (comma == std::string_view::npos) return numbers;
        text.remove_prefix(comma + 1);
    }
}

std::vector<double> NumberList::Require(const std::string& text, std::size_t count,
                                        const std::string& option, const std::string& form) {
    const auto numbers = Parse(text);
    if (!numbers || numbers->size() != count)
        throw CommandUsageError(option + " takes " + form +
                                ", finite numbers with a decimal point; '" + text +
                                "' is not that");
    return *numbers;
}

}  // namespace vpc
