#include "vpc/export/ExportCommand.h"

#include <cstdio>
#include <filesystem>

#include <CLI/CLI.hpp>

#include "core/util/DrawingUnits.h"
#include "core/util/FileTools.h"
#include "tree/file/NodeRecordReader.h"
#include "vpc/common/Interrupt.h"
#include "vpc/common/NoPoints.h"
#include "vpc/common/OutputFile.h"
#include "vpc/common/OutputGuard.h"
#include "vpc/common/PlacedBox.h"
#include "vpc/common/StandardOutput.h"
#include "vpc/common/TreeFile.h"
#include "vpc/export/ExportSource.h"
#include "vpc/export/LasExport.h"
#include "vpc/export/PlyExport.h"
#include "vpc/export/TextExport.h"

namespace vpc {

namespace {

OdGePoint3d toPoint(const NodeRecord::Coordinates& p) {
    return {p[0], p[1], p[2]};
}

/// The box around all points of the file, which is that of its root.
PlacedBox boxOf(PointTreeReader& tree, const OdGeMatrix3d& matrix) {
    NodeRecordReader records(tree);
    NodeRecord root;
    if (!records.Next(root)) return {{}, {}, matrix};
    return {toPoint(root.boxMinimum), toPoint(root.boxMaximum), matrix};
}

}  // namespace

ExportCommand::ExportCommand(CLI::App& app)
    : Command(app, "export", "Write one level's points as a scan: LAS, PLY, PTS, PTX or text"),
      level_(Options(),
             "Which level; 0 is the coarsest, and the deepest, which is the default, holds every "
             "point"),
      cuts_(Options()) {
    CLI::App& options = Options();
    options.add_option("FILE", file_, "The tree file")->required()->type_name("FILE.vpt");
    options
        .add_option("-o,--output", output_,
                    "The scan to write: its extension (las, ply, pts, ptx, xyz or csv) tells the "
                    "format; - writes text to standard output")
        ->required()
        ->type_name("OUT");
    options
        .add_option("--format", formatText_,
                    "The format, whatever the extension says; for standard output pts, ptx, csv or "
                    "xyz, which is the default there")
        ->check(CLI::IsMember(exportFormatNames(), CLI::ignore_case))
        ->type_name("FORMAT");
    options
        .add_option("--coloured-by", colouredBy_,
                    "Colours to write in place of the scan's: elevation, from blue to red")
        ->check(CLI::IsMember({"elevation"}))
        ->type_name("WHAT");
    options.add_flag("--force", force_, "Replace a file that has the output's name already");
    options.footer(
        "Examples:\n"
        "  vpc export scan.vpt -o points.las\n"
        "  vpc export scan.vpt -o part.ply --clip-circle 458050,5428050,20\n"
        "  vpc export scan.vpt -o - --format csv --level 0\n"
        "Coordinates, intensities and colours are those of the tree file; where LAS cannot hold "
        "them exactly, a warning says how far they are off. Sections and clipping regions lie in "
        "the world, where --matrix places the file; the coordinates that are written are the "
        "file's own. PTS, PTX, xyz and csv have lines x y z intensity red green blue.");
}

int ExportCommand::Run() {
    const ExportFormat format = RequireFormat();
    cuts_.Read();
    Interrupt::Catch();
    const auto tree = openCurrentTreeFile(file_);
    CheckOutput();
    const unsigned long long levels = tree->Header().levels;
    unit_ = tree->Header().hostValue;
    const auto level = level_.Read(levels);
    if (levels == 0) throw CommandError(NoPoints::InFile(file_));
    ExportSource source(*tree, level.value_or(levels - 1), cuts_);
    RequirePoints(source, *tree);
    if (!colouredBy_.empty()) source.ColourByElevation();
    Write(format, source);
    return exitDone;
}

bool ExportCommand::WritesToStandardOutput() const {
    return output_ == standardOutputName;
}

ExportFormat ExportCommand::RequireFormat() const {
    if (!formatText_.empty()) {
        const ExportFormat format = *exportFormatOf(formatText_);
        if (WritesToStandardOutput() && !isText(format))
            throw CommandUsageError(
                "only text goes to standard output: --format pts, ptx, xyz or csv");
        return format;
    }
    if (WritesToStandardOutput()) return ExportFormat::xyz;
    const std::string extension = std::filesystem::path(output_).extension().string();
    const auto format = exportFormatOf(extension.empty() ? "" : extension.substr(1));
    if (format) return *format;
    throw CommandUsageError("'" + output_ +
                            "' must end in .las, .ply, .pts, .ptx, .xyz or .csv, which tells the "
                            "format to write; or give --format");
}

void ExportCommand::CheckOutput() const {
    if (WritesToStandardOutput()) return;
    requireOtherFile(output_, file_, "the tree file itself");
    if (!force_) requireNoFile(output_);
}

void ExportCommand::RequirePoints(const ExportSource& source, PointTreeReader& tree) const {
    if (source.Summary().points > 0) return;
    if (source.PointsOfLevel() == 0) throw CommandError(NoPoints::InFile(file_));
    throw CommandError(NoPoints::AfterCuts(std::to_string(source.PointsOfLevel()) + " points",
                                           boxOf(tree, cuts_.Matrix())));
}

void ExportCommand::Write(ExportFormat format, ExportSource& source) const {
    if (WritesToStandardOutput()) return WriteScan(format, source, writeStandardOutput);
    writeOutputFile(output_, [&](ReplacementFile& file) {
        WriteScan(format, source, [&](std::string_view bytes) { file.Write(bytes); });
        Interrupt::Check();
    });
    std::printf("%s: %llu points\n", output_.c_str(), source.Summary().points);
}

void ExportCommand::WarnOfUnit() const {
    if (unit_ == DrawingUnits::undefined || unit_ == DrawingUnits::metres) return;
    const std::string unit = DrawingUnits::Name(unit_);
    if (!unit.empty())
        Warn("the scan does not say that its unit is " + unit + "; give --unit " + unit +
             " when it is prepared again");
}

void ExportCommand::WriteScan(ExportFormat format, ExportSource& source,
                              const ExportOutput& out) const {
    switch (format) {
        case ExportFormat::las: {
            LasExport las(source, unit_);
            las.Write(out);
            if (!las.NamesUnit()) WarnOfUnit();
            for (const std::string& warning : las.Warnings()) Warn(warning);
            return;
        }
        case ExportFormat::ply:
            WarnOfUnit();
            return PlyExport::Write(source, out);
        case ExportFormat::pts:
            WarnOfUnit();
            return TextExport::WritePts(source, out);
        case ExportFormat::ptx:
            WarnOfUnit();
            return TextExport::WritePtx(source, out);
        case ExportFormat::xyz:
            WarnOfUnit();
            return TextExport::WriteXyz(source, out);
        case ExportFormat::csv:
            WarnOfUnit();
            return TextExport::WriteCsv(source, out);
    }
}

}  // namespace vpc
