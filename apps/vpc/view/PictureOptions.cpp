#include "vpc/view/PictureOptions.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <vector>

#include <CLI/CLI.hpp>

#include "draw/PointSize.h"
#include "vpc/common/Command.h"
#include "vpc/common/NumberList.h"

namespace vpc {

namespace {

constexpr const char* pictureExtension = ".png";
constexpr const char* automatic = "auto";

struct NamedColour {
    const char* name;
    draw::Colour colour;
};

constexpr std::array namedColours = {
    NamedColour{"slate", {44, 54, 68}}, NamedColour{"black", {0, 0, 0}},
    NamedColour{"grey", {128, 128, 128}}, NamedColour{"white", {255, 255, 255}},
    NamedColour{"blue", {44, 62, 108}}};

std::string backgroundForm() {
    std::string form = "R,G,B, whole numbers from 0 to 255, or a name:";
    for (const NamedColour& named : namedColours) form += std::string(" ") + named.name;
    return form;
}

/// The bytes of a colour; nothing for numbers that are none.
std::optional<draw::Colour> colourOf(const std::vector<double>& numbers) {
    if (numbers.size() != 3) return std::nullopt;
    std::array<std::uint8_t, 3> channels{};
    for (std::size_t i = 0; i < channels.size(); ++i) {
        if (!(numbers[i] >= 0.0 && numbers[i] <= 255.0) || numbers[i] != std::floor(numbers[i]))
            return std::nullopt;
        channels[i] = static_cast<std::uint8_t>(numbers[i]);
    }
    return draw::Colour{channels[0], channels[1], channels[2]};
}

draw::Colour parseBackground(const std::string& text) {
    for (const NamedColour& named : namedColours)
        if (CLI::detail::to_lower(text) == named.name) return named.colour;
    const auto numbers = NumberList::Parse(text);
    const auto colour = numbers ? colourOf(*numbers) : std::nullopt;
    if (!colour)
        throw CommandUsageError("--background takes " + backgroundForm() + "; '" + text +
                                "' is not that");
    return *colour;
}

std::optional<double> parsePointSize(const std::string& text) {
    if (text.empty() || text == automatic) return std::nullopt;
    const auto numbers = NumberList::Parse(text);
    if (!numbers || numbers->size() != 1 || numbers->front() < 1.0 ||
        numbers->front() > draw::PointSize::largestDiameter)
        throw CommandUsageError("--point-size takes auto or a number of pixels from 1 to " +
                                std::to_string(static_cast<int>(draw::PointSize::largestDiameter)) +
                                "; '" + text + "' is not that");
    return numbers->front();
}

draw::ValueRange parseRange(const std::string& text) {
    const auto n = NumberList::Require(text, 2, "--range", "MIN,MAX");
    if (!(n[0] < n[1])) throw CommandUsageError("--range needs a MIN that is below MAX");
    return {n[0], n[1]};
}

void requirePictureName(const std::string& file) {
    const std::string name = CLI::detail::to_lower(file);
    const std::string extension = pictureExtension;
    if (name.size() <= extension.size() || !name.ends_with(extension))
        throw CommandUsageError("--image writes a PNG file, and '" + file +
                                "' is no name for one; end it in .png");
}

}  // namespace

PictureOptions::PictureOptions(CLI::App& options) {
    const char* const group = "Picture";
    CLI::Option* const image =
        options.add_option("--image", file_, "Draw the points into this picture")
            ->type_name("OUT.png")
            ->group(group);
    const auto add = [&](const char* name, std::string& text, const char* type,
                         const std::string& help) {
        return options.add_option(name, text, help)->type_name(type)->group(group)->needs(image);
    };
    add("--size", sizeText_, "WxH",
        "Width and height of the picture in pixels, default: the viewport's");
    add("--point-size", pointSizeText_, "PIXELS",
        "Size of every point in pixels, or auto (the default): as large as it takes to close the "
        "surface");
    add("--shading", shadingText_, "HOW",
        "depth (the default): darken what lies behind an edge or in a hollow; or none")
        ->check(CLI::IsMember({"depth", "none"}, CLI::ignore_case));
    add("--range", rangeText_, "MIN,MAX",
        "Elevations or intensities that the colours span, default: what is visible, less 1% of "
        "strays at either end");
    add("--background", backgroundText_, "COLOUR", "Background, as " + backgroundForm());
    options.add_flag("--no-legend", noLegend_, "Leave out the legend and the scale bar")
        ->group(group)
        ->needs(image);
}

void PictureOptions::Read() {
    if (Wanted()) requirePictureName(file_);
    if (!sizeText_.empty()) size_ = Viewport::Parse(sizeText_, "--size");
    pointSize_ = parsePointSize(CLI::detail::to_lower(pointSizeText_));
    shaded_ = CLI::detail::to_lower(shadingText_) != "none";
    if (!rangeText_.empty()) range_ = parseRange(rangeText_);
    background_ =
        backgroundText_.empty() ? namedColours[0].colour : parseBackground(backgroundText_);
}

}  // namespace vpc
