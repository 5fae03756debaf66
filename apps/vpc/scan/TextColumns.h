#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vpc {

/// Which of a line's values are a point's, and in which order a PTS line has them: x y z, the
/// intensity if there is one, red green blue if there are such.
struct TextColumns {
    /// Values of a line, the unused ones included.
    std::size_t inLine = 0;
    /// The used ones, counted from 0.
    std::vector<std::size_t> used;
    /// Names of those that are not used.
    std::vector<std::string> unused;

    /// The columns of a line with so many values and without names; nothing where a point cannot
    /// have as many.
    static std::optional<TextColumns> Unnamed(std::size_t values);
    /// The columns that a header line names ("//X Y Z R G B"); nothing where it does not name x, y
    /// and z. Of several columns with one meaning it is the first; colours count only together.
    static std::optional<TextColumns> Named(std::string_view header);

    bool HasColours() const { return used.size() >= 6; }
    /// Whether a line as it stands is a line of PTS.
    bool AreInOrder() const;
};

}  // namespace vpc
