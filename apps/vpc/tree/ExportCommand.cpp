#include "vpc/tree/ExportCommand.h"

#include <charconv>
#include <cstdio>
#include <filesystem>

#include <CLI/CLI.hpp>

#include "core/geometry/VpcSimplePointTools.h"
#include "core/util/VpcColorTools.h"
#include "io/PlyIO.h"
#include "io/PtsIO.h"
#include "io/PtxIO.h"
#include "io/TextFileWriter.h"
#include "tree/file/LevelPoints.h"
#include "vpc/common/Command.h"
#include "vpc/common/Interrupt.h"
#include "vpc/common/OutputFile.h"
#include "vpc/common/TreeFile.h"

namespace vpc {

namespace {

/// Gives every point the colour of its elevation, as the other formats' writers do by themselves.
void colourByElevation(std::vector<VpcPoint3D>& points) {
    VpcPoint3D low, high;
    VpcSimplePointTools::DeterminePointsMinMaxPoints(points, low, high);
    const auto channel = [](double value) {
        return value > 0.0 ? static_cast<std::uint16_t>(std::min(value, 255.0)) : std::uint16_t{0};
    };
    for (VpcPoint3D& p : points) {
        double red = 0, green = 0, blue = 0;
        VpcColorTools::ApplyColorScheme(p.z, low.z, high.z, VPC_ColorScheme_Spectrum, red, green,
                                        blue);
        p.red = channel(red);
        p.green = channel(green);
        p.blue = channel(blue);
    }
}

unsigned long long parseLevel(const std::string& text, unsigned long long levels) {
    unsigned long long level = 0;
    const char* const end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, level);
    if (result.ec != std::errc() || result.ptr != end || level >= levels)
        throw CommandUsageError("--level takes a level of the file, 0 to " +
                                std::to_string(levels - 1) + "; '" + text + "' is not one");
    return level;
}

}  // namespace

ExportCommand::ExportCommand(CLI::App& app)
    : Command(app, "export", "Write one level's points as a scan: PTS, PTX or PLY") {
    CLI::App& options = Options();
    options.add_option("FILE", file_, "The tree file")->required()->type_name("FILE.vpt");
    options
        .add_option("-o,--output", output_,
                    "The scan to write: its extension (pts, ptx or ply) tells the format")
        ->required()
        ->type_name("OUT.pts|ptx|ply");
    options
        .add_option("--level", levelText_,
                    "Which level; 0 is the coarsest, and the deepest, which is the default, "
                    "holds every point")
        ->type_name("N");
    options
        .add_option("--coloured-by", colouredBy_,
                    "Colours to write in place of the scan's: elevation, from blue to red")
        ->check(CLI::IsMember({"elevation"}))
        ->type_name("WHAT");
    options.footer(
        "PTS and PTX coordinates have nine significant digits, PLY coordinates six decimals. The "
        "level is held in memory while it is written.");
}

int ExportCommand::Run() {
    const Format format = RequireFormat();
    Interrupt::Catch();
    std::vector<VpcPoint3D> points = ReadPoints();
    const std::size_t count = points.size();
    Write(format, std::move(points));
    std::printf("%s: %zu points\n", output_.c_str(), count);
    return exitDone;
}

ExportCommand::Format ExportCommand::RequireFormat() const {
    const std::string extension = std::filesystem::path(output_).extension().string();
    if (extension == ".pts" || extension == ".PTS") return Format::Pts;
    if (extension == ".ptx" || extension == ".PTX") return Format::Ptx;
    if (extension == ".ply" || extension == ".PLY") return Format::Ply;
    throw CommandUsageError("'" + output_ +
                            "' must end in .pts, .ptx or .ply, all small or all capital letters, "
                            "which tells the format to write");
}

std::vector<VpcPoint3D> ExportCommand::ReadPoints() const {
    const auto tree = openCurrentTreeFile(file_);
    const unsigned long long levels = tree->Header().levels;
    if (levels == 0) return {};
    const unsigned long long level =
        levelText_.empty() ? levels - 1 : parseLevel(levelText_, levels);
    return advising("see vpc verify",
                    [&] { return LevelPoints::Read(*tree, level, Interrupt::Check); });
}

void ExportCommand::Write(Format format, std::vector<VpcPoint3D> points) const {
    const bool byElevation = !colouredBy_.empty();
    writeOutputFile(output_, [&](ReplacementFile& replacement) {
        TextFileWriter file(replacement.TemporaryName());
        switch (format) {
            case Format::Pts:
                PtsIO::WriteTo(file, points, byElevation);
                break;
            case Format::Ptx:
                PtxIO::WriteTo(
                    file, points,
                    byElevation ? VPC_Stylization_ELEVATION : VPC_Stylization_SCANCOLORS);
                break;
            case Format::Ply:
                if (byElevation) colourByElevation(points);
                PlyIO::WriteTo(file, points, {});
                break;
        }
        file.Close();
        Interrupt::Check();
    });
}

}  // namespace vpc
