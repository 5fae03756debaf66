#include "ExportCommand.h"

#include <sys/stat.h>

#include <charconv>
#include <cstdio>
#include <filesystem>
#include <fstream>

#include "CommandError.h"
#include "ExitStatus.h"
#include "Interrupt.h"
#include "TreeFile.h"
#include "core/geometry/VpcSimplePointTools.h"
#include "core/util/FileTools.h"
#include "core/util/ReplacementFile.h"
#include "core/util/StringTools.h"
#include "core/util/VpcColorTools.h"
#include "io/PlyIO.h"
#include "io/PtsIO.h"
#include "io/PtxIO.h"
#include "tree/file/LevelPoints.h"

namespace vpc {

namespace {

/// Lines that a file has beside one for every point.
constexpr unsigned long long ptsHeaderLines = 1;
constexpr unsigned long long ptxHeaderLines = 10;
constexpr unsigned long long plyHeaderLines = 14;

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

/// Whether the file has all its lines: the writers do not report failures.
bool isWhole(const wxString& file, unsigned long long lines) {
    if (FileTools::CountLinesInFile(file) != lines) return false;
    std::ifstream stream(FileTools::ToNativePath(file), std::ios::binary | std::ios::ate);
    stream.seekg(-1, std::ios::end);
    return stream.get() == '\n';
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
    CheckOutput();
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

void ExportCommand::CheckOutput() const {
    struct stat status = {};
    if (stat(output_.c_str(), &status) == 0 && !S_ISREG(status.st_mode))
        throw CommandError("'" + output_ + "' is no regular file; choose another name");
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
    ReplacementFile replacement(FileTools::FromNativePath(output_), StringTools::createGUID());
    const wxString& name = replacement.TemporaryName();
    const bool byElevation = !colouredBy_.empty();
    unsigned long long lines = points.size();
    switch (format) {
        case Format::Pts:
            lines += ptsHeaderLines;
            PtsIO::Write(std::move(points), name, byElevation);
            break;
        case Format::Ptx:
            lines += ptxHeaderLines;
            PtxIO::Write(points, name,
                         byElevation ? VPC_Stylization_ELEVATION : VPC_Stylization_SCANCOLORS);
            break;
        case Format::Ply:
            lines += plyHeaderLines;
            if (byElevation) colourByElevation(points);
            PlyIO::WriteVertices(std::move(points), name);
            break;
    }
    Interrupt::Check();
    if (!isWhole(name, lines) || !replacement.Commit())
        throw CommandError("'" + output_ +
                           "' cannot be written; choose another folder or make room");
}

}  // namespace vpc
