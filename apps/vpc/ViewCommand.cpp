#include "ViewCommand.h"

#include <chrono>
#include <cstdio>
#include <filesystem>

#include "CommandError.h"
#include "ExitStatus.h"
#include "Interrupt.h"
#include "LoadedPointSet.h"
#include "MatrixOption.h"
#include "OutputFile.h"
#include "PointImage.h"
#include "TextLine.h"
#include "ViewCuts.h"
#include "ViewNames.h"
#include "ViewReport.h"

namespace vpc {

namespace {

/// So many digits give every double back.
constexpr int allDigits = 17;
constexpr unsigned long long pointsBetweenChecks = 100000;

class Stopwatch {
public:
    double Seconds() const {
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - start_).count();
    }

private:
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

void print(const std::string& text) {
    std::fputs(text.c_str(), stdout);
}

}  // namespace

ViewCommand::ViewCommand(CLI::App& app)
    : Command(app, "view", "Show a tree file as a host would: a picture, the points, a report"),
      camera_(Options()) {
    Options().add_option("FILE", options_.file, "The tree file")->required()->type_name("FILE.vpt");
    DeclareSelection();
    DeclareOutput();
    Options().footer(
        "Examples:\n"
        "  vpc view scan.vpt --image scan.png\n"
        "  vpc view scan.vpt --stylization elevation --scheme Earth --image scan.png\n"
        "  vpc view scan.vpt --eye 0,0,50 --target 20,30,0 --field 40,25 --report\n"
        "  vpc view scan.vpt --clip-circle 20,30,10 --clip-polygon 'outside:0,0;9,0;9,9' \\\n"
        "      --points visible.txt\n"
        "Without --image, --points, --report and --diagnostics it prints the report in words.");
}

void ViewCommand::DeclareSelection() {
    CLI::App& options = Options();
    options
        .add_option("--budget", options_.budget,
                    "Points to show at most, as the host's variable POINTCLOUDPOINTMAX says")
        ->check(CLI::Range(LoadedPointSet::leastBudget, LoadedPointSet::mostBudget))
        ->capture_default_str()
        ->type_name("N");
    options
        .add_option("--density", options_.density,
                    "full, or low: no more than a fifth of the budget")
        ->check(CLI::IsMember(ViewNames::Densities(), CLI::ignore_case))
        ->capture_default_str()
        ->type_name("DENSITY");
    options
        .add_option("--stylization", options_.stylization,
                    "What the colours show: scan, elevation or intensity")
        ->check(CLI::IsMember(ViewNames::Stylizations(), CLI::ignore_case))
        ->capture_default_str()
        ->type_name("WHAT");
    options.add_option("--scheme", options_.scheme, "Colour ramp for elevation and intensity")
        ->check(CLI::IsMember(ViewNames::Schemes(), CLI::ignore_case))
        ->capture_default_str()
        ->type_name("NAME");
    options
        .add_option("--section", options_.sections,
                    "Keep what is on the side of a plane, given by a point of it, that its normal "
                    "points to; may be repeated")
        ->allow_extra_args(false)
        ->type_name("PX,PY,PZ,NX,NY,NZ");
    options
        .add_option("--clip-circle", options_.clipCircles,
                    "Keep what is within a circle in the world's XY plane, or with outside: in "
                    "front, what is not; may be repeated")
        ->allow_extra_args(false)
        ->type_name("[outside:]CX,CY,R");
    options
        .add_option("--clip-polygon", options_.clipPolygons,
                    "The same for a polygon; may be repeated")
        ->allow_extra_args(false)
        ->type_name("[outside:]X,Y;X,Y;...");
    options
        .add_option("--matrix", options_.matrix,
                    "Rotation and translation from the file's coordinates to the world's: 16 "
                    "numbers by rows, with commas or blanks between")
        ->expected(MatrixOption::numbers)
        ->delimiter(',')
        ->type_name("M11,M12,...");
}

void ViewCommand::DeclareOutput() {
    CLI::App& options = Options();
    options.add_option("--image", options_.image, "Draw the points into this picture")
        ->type_name("OUT.png");
    options
        .add_option("--size", options_.size,
                    "Width and height of the picture in pixels, default: the viewport's")
        ->type_name("WxH");
    options
        .add_option("--points", options_.points,
                    "Write every visible point: x y z red green blue size")
        ->type_name("OUT.txt");
    options.add_flag("--report", options_.report, "Print what the view came to in JSON");
    options
        .add_option("--diagnostics", options_.diagnostics,
                    "Write the camera's values, its volume and the boxes of the visible nodes into "
                    "this folder")
        ->type_name("DIR");
}

int ViewCommand::Run() {
    camera_.Read();
    const ViewCuts cuts = ViewCuts::Parse(options_);
    const OdGeMatrix3d matrix = MatrixOption::Parse(options_.matrix);
    size_ = camera_.GetViewport();
    if (!options_.size.empty()) {
        if (options_.image.empty()) throw CommandUsageError("--size is for --image");
        size_ = Viewport::Parse(options_.size, "--size");
        camera_.SetViewport(size_);
    }
    CheckOutput(options_.image);
    CheckOutput(options_.points);
    Interrupt::Catch();

    LoadedPointSet pointSet(options_.file);
    pointSet.SetBudget(options_.budget);
    SetUp(pointSet, cuts, matrix);
    const ViewCamera camera = camera_.Choose(pointSet.Corners(matrix));
    const Stopwatch stopwatch;
    pointSet.Update(camera, matrix);
    const ViewReport report = pointSet.Report(stopwatch.Seconds());
    Interrupt::Check();

    if (!options_.image.empty()) WriteImage(pointSet, camera);
    if (!options_.points.empty()) WritePoints(pointSet);
    if (!options_.diagnostics.empty()) {
        pointSet.WriteDiagnostics(options_.diagnostics);
        TellWritten(options_.diagnostics, "the view's values and shapes");
    }
    if (options_.report)
        print(report.ToJson());
    else if (options_.image.empty() && options_.points.empty() && options_.diagnostics.empty())
        print(options_.file + "\n" + report.ToText());
    return exitDone;
}

void ViewCommand::CheckOutput(const std::string& output) const {
    std::error_code ignored;  // the output need not be there
    if (!output.empty() && std::filesystem::equivalent(output, options_.file, ignored))
        throw CommandError("'" + output + "' is the tree file itself; choose another name");
}

void ViewCommand::SetUp(LoadedPointSet& pointSet, const ViewCuts& cuts,
                        const OdGeMatrix3d& matrix) const {
    pointSet->setDrawDensity(ViewNames::Density(options_.density));
    pointSet->setStylizationType(ViewNames::Stylization(options_.stylization));
    pointSet->setColorScheme(ViewNames::Scheme(options_.scheme));
    for (const SectionPlane& plane : cuts.sections)
        pointSet->addSection(OdString("section"), plane.point, plane.normal, true);
    for (const ClipRegion& region : cuts.clips) pointSet->addClipping(region.ToConfig(matrix));
}

void ViewCommand::WriteImage(const LoadedPointSet& pointSet, const ViewCamera& camera) const {
    const unsigned long long points = pointSet->getNrVisiblePoints();
    const OdGePoint3d* const coordinates = pointSet->getPointCoordinates();
    const OdCmEntityColor* const colours = pointSet->getPointColors();
    const double* const sizes = pointSet->getPointSizes();
    PointImage image(camera, size_);
    for (unsigned long long i = 0; i < points; ++i)
        image.Draw({coordinates[i].x, coordinates[i].y, coordinates[i].z},
                   {colours[i].red(), colours[i].green(), colours[i].blue()}, sizes[i]);
    Interrupt::Check();
    OutputFile file(options_.image);
    const std::vector<char> png = image.Png();
    file.Write(png.data(), png.size());
    file.Commit();
    TellWritten(options_.image, std::to_string(size_.width) + " x " + std::to_string(size_.height) +
                                    " pixels of " + std::to_string(points) + " points");
}

void ViewCommand::WritePoints(const LoadedPointSet& pointSet) const {
    const unsigned long long points = pointSet->getNrVisiblePoints();
    const OdGePoint3d* const coordinates = pointSet->getPointCoordinates();
    const OdCmEntityColor* const colours = pointSet->getPointColors();
    const double* const sizes = pointSet->getPointSizes();
    OutputFile file(options_.points);
    for (unsigned long long i = 0; i < points; ++i) {
        if (i % pointsBetweenChecks == 0) Interrupt::Check();
        TextLine line;
        for (const double value : {coordinates[i].x, coordinates[i].y, coordinates[i].z})
            line.AddGeneral(value, allDigits);
        for (const int channel : {colours[i].red(), colours[i].green(), colours[i].blue()})
            line.Add(channel);
        line.AddGeneral(sizes[i], allDigits);
        line.End();
        file.Write(line.Data(), line.Size());
    }
    file.Commit();
    TellWritten(options_.points, std::to_string(points) + " points");
}

void ViewCommand::TellWritten(const std::string& file, const std::string& what) const {
    if (!options_.report) print(file + ": " + what + "\n");
}

}  // namespace vpc
