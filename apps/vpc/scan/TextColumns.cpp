#include "vpc/scan/TextColumns.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <numeric>

namespace vpc {

namespace {

enum Role : std::size_t { X, Y, Z, Intensity, Red, Green, Blue, roles };

/// What people call the columns, in small letters.
constexpr std::array<std::string_view, roles> roleNames = {
    " x easting east e longitude lon long rechtswert ost ",
    " y northing north n latitude lat hochwert nord ",
    " z height elevation altitude h hoehe h\xc3\xb6he ",
    " intensity int intens i reflectance reflectivity refl amplitude ",
    " r red ",
    " g green ",
    " b blue "};

Role roleOf(const std::string& name) {
    const auto found =
        std::find_if(roleNames.begin(), roleNames.end(), [&](std::string_view names) {
            return names.find(" " + name + " ") != std::string_view::npos;
        });
    return static_cast<Role>(found - roleNames.begin());
}

/// The name itself: without quotes, a unit in brackets and the word coordinate, in small letters.
std::string cleaned(std::string_view cell) {
    constexpr std::string_view decoration = "\"'_-. \t\r";
    std::string name;
    for (const char c : cell.substr(0, cell.find_first_of("[(")))
        if (decoration.find(c) == std::string_view::npos)
            name += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    for (const std::string_view word : {"coordinate", "coord"})
        if (name.ends_with(word)) name.resize(name.size() - word.size());
    return name;
}

std::vector<std::string> namesIn(std::string_view header) {
    header.remove_prefix(std::min(header.find_first_not_of(" \t#/%!;"), header.size()));
    const bool hasCells = header.find_first_of(",;\t") != std::string_view::npos;
    const char* const between = hasCells ? ",;\t" : " ";
    std::vector<std::string> names;
    while (!header.empty()) {
        const std::size_t end = std::min(header.find_first_of(between), header.size());
        std::string name = cleaned(header.substr(0, end));
        // Where blanks separate names, units stand between them.
        if (hasCells || !name.empty()) names.push_back(std::move(name));
        header.remove_prefix(std::min(end + 1, header.size()));
    }
    return names;
}

}  // namespace

std::optional<TextColumns> TextColumns::Unnamed(std::size_t values) {
    if (values != 3 && values != 4 && values != 6 && values != 7) return std::nullopt;
    TextColumns columns;
    columns.inLine = values;
    columns.used.resize(values);
    std::iota(columns.used.begin(), columns.used.end(), std::size_t{0});
    return columns;
}

std::optional<TextColumns> TextColumns::Named(std::string_view header) {
    const std::vector<std::string> names = namesIn(header);
    std::array<std::size_t, roles> places;
    for (std::size_t role = X; role < roles; ++role)
        places[role] = static_cast<std::size_t>(
            std::find_if(names.begin(), names.end(),
                         [&](const std::string& name) { return roleOf(name) == role; }) -
            names.begin());
    const auto isNamed = [&](Role role) { return places[role] != names.size(); };
    if (!isNamed(X) || !isNamed(Y) || !isNamed(Z)) return std::nullopt;
    TextColumns columns;
    columns.inLine = names.size();
    columns.used = {places[X], places[Y], places[Z]};
    if (isNamed(Intensity)) columns.used.push_back(places[Intensity]);
    if (isNamed(Red) && isNamed(Green) && isNamed(Blue))
        columns.used.insert(columns.used.end(), {places[Red], places[Green], places[Blue]});
    for (std::size_t i = 0; i < names.size(); ++i)
        if (std::find(columns.used.begin(), columns.used.end(), i) == columns.used.end())
            columns.unused.push_back(names[i]);
    return columns;
}

bool TextColumns::AreInOrder() const {
    return used.size() == inLine && std::is_sorted(used.begin(), used.end());
}

}  // namespace vpc
