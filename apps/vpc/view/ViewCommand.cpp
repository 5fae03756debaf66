#include "vpc/view/ViewCommand.h"

#include <chrono>
#include <cstdio>
#include <filesystem>

#include <CLI/CLI.hpp>

#include "vpc/common/Interrupt.h"
#include "vpc/common/OutputFile.h"
#include "vpc/common/TextLine.h"
#include "vpc/view/LoadedPointSet.h"
#include "vpc/view/PointImage.h"

namespace vpc {

namespace {

/// A text with this many digits gives every double back exactly.
constexpr int allDigits = 17;

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
      camera_(Options()),
      options_(Options()) {
    Options().add_option("FILE", file_, "The tree file")->required()->type_name("FILE.vpt");
    DeclareOutput();
    Options().footer(
        "Examples:\n"
        "  vpc view scan.vpt --image scan.png\n"
        "  vpc view scan.vpt --stylization elevation --scheme Earth --image scan.png\n"
        "  vpc view scan.vpt --eye 458000,5428000,350 --target 458050,5428050,280 --field 40,25 "
        "--report\n"
        "  vpc view scan.vpt --clip-circle 458050,5428050,20 \\\n"
        "      --clip-polygon 'outside:458040,5428040;458050,5428040;458050,5428050' \\\n"
        "      --points visible.txt\n"
        "Without --image, --points, --report and --diagnostics it prints the report in words.");
}

void ViewCommand::DeclareOutput() {
    CLI::App& options = Options();
    options.add_option("--image", image_, "Draw the points into this picture")
        ->type_name("OUT.png");
    options
        .add_option("--size", sizeText_,
                    "Width and height of the picture in pixels, default: the viewport's")
        ->type_name("WxH");
    options.add_option("--points", points_, "Write every visible point: x y z red green blue size")
        ->type_name("OUT.txt");
    options.add_flag("--report", report_, "Print what the view came to in JSON");
    options
        .add_option("--diagnostics", diagnostics_,
                    "Write the camera's values, its volume and the boxes of the visible nodes into "
                    "this folder")
        ->type_name("DIR");
}

int ViewCommand::Run() {
    camera_.Read();
    options_.Read();
    size_ = camera_.GetViewport();
    if (!sizeText_.empty()) {
        if (image_.empty()) throw CommandUsageError("--size is for --image");
        size_ = Viewport::Parse(sizeText_, "--size");
        camera_.SetViewport(size_);
    }
    CheckOutput(image_);
    CheckOutput(points_);
    Interrupt::Catch();

    LoadedPointSet pointSet(file_);
    pointSet.SetBudget(options_.Budget());
    options_.SetUp(*pointSet);
    options_.SetLevel(pointSet);
    const OdGeMatrix3d& matrix = options_.Matrix();
    const ViewCamera camera = camera_.Choose(pointSet.Corners(matrix));
    const Stopwatch stopwatch;
    pointSet.Update(camera, matrix);
    const ViewReport report = pointSet.Report(stopwatch.Seconds());
    Interrupt::Check();
    if (const auto reason = pointSet.WhyEmpty(camera, size_, matrix)) Warn(*reason);
    if (const auto reason = pointSet.WhyCoarser()) Warn(*reason);

    if (!image_.empty()) WriteImage(pointSet, camera);
    if (!points_.empty()) WritePoints(pointSet);
    if (!diagnostics_.empty()) {
        pointSet.WriteDiagnostics(diagnostics_);
        TellWritten(diagnostics_, "the view's values and shapes");
    }
    if (report_)
        print(report.ToJson());
    else if (image_.empty() && points_.empty() && diagnostics_.empty())
        print(file_ + "\n" + report.ToText());
    return exitDone;
}

void ViewCommand::CheckOutput(const std::string& output) const {
    std::error_code ignored;  // the output need not exist yet
    if (!output.empty() && std::filesystem::equivalent(output, file_, ignored))
        throw CommandError("'" + output + "' is the tree file itself; choose another name");
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
    const std::vector<char> png = image.Png();
    writeOutputFile(image_, [&](ReplacementFile& file) { file.Write(png.data(), png.size()); });
    TellWritten(image_, std::to_string(size_.width) + " x " + std::to_string(size_.height) +
                            " pixels of " + std::to_string(points) + " points");
}

void ViewCommand::WritePoints(const LoadedPointSet& pointSet) const {
    const unsigned long long points = pointSet->getNrVisiblePoints();
    const OdGePoint3d* const coordinates = pointSet->getPointCoordinates();
    const OdCmEntityColor* const colours = pointSet->getPointColors();
    const double* const sizes = pointSet->getPointSizes();
    writeOutputFile(points_, [&](ReplacementFile& file) {
        for (unsigned long long i = 0; i < points; ++i) {
            Interrupt::CheckSometimes(i);
            TextLine line;
            for (const double value : {coordinates[i].x, coordinates[i].y, coordinates[i].z})
                line.AddGeneral(value, allDigits);
            for (const int channel : {colours[i].red(), colours[i].green(), colours[i].blue()})
                line.Add(channel);
            line.AddGeneral(sizes[i], allDigits);
            line.End();
            file.Write(line.Data(), line.Size());
        }
    });
    TellWritten(points_, std::to_string(points) + " points");
}

void ViewCommand::TellWritten(const std::string& file, const std::string& what) const {
    if (!report_) print(file + ": " + what + "\n");
}

}  // namespace vpc
