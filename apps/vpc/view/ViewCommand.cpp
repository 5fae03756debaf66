#include "vpc/view/ViewCommand.h"

#include <chrono>
#include <cstdio>
#include <filesystem>

#include <CLI/CLI.hpp>

#include "vpc/common/Interrupt.h"
#include "vpc/common/OutputFile.h"
#include "vpc/common/OutputGuard.h"
#include "vpc/common/StandardOutput.h"
#include "vpc/common/TextLine.h"
#include "vpc/view/Framing.h"
#include "vpc/view/LoadedPointSet.h"
#include "vpc/view/PngFile.h"
#include "vpc/view/PointPicture.h"

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

/// Whether two names stand for one file, which need not exist yet.
bool isSameFile(const std::string& a, const std::string& b) {
    if (a.empty() || b.empty()) return false;
    std::error_code ignored;
    if (std::filesystem::equivalent(a, b, ignored)) return true;
    const auto canonicalA = std::filesystem::weakly_canonical(a, ignored);
    const auto canonicalB = std::filesystem::weakly_canonical(b, ignored);
    return canonicalA == canonicalB;
}

/// Throws CommandUsageError for a name that says that its file is something else than text.
void requireTextName(const std::string& file) {
    const std::string extension =
        CLI::detail::to_lower(std::filesystem::path(file).extension().string());
    for (const char* other :
         {".las", ".laz", ".pts", ".ptx", ".ply", ".vpt", ".png", ".xyz", ".csv", ".asc"})
        if (extension == other)
            throw CommandUsageError("--points writes plain text, and '" + file +
                                    "' is a name for something else; end it in .txt");
}

}  // namespace

ViewCommand::ViewCommand(CLI::App& app)
    : Command(app, "view", "Show a tree file as a host would: a picture, the points, a report"),
      camera_(Options()),
      options_(Options()),
      picture_(Options()) {
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
    options
        .add_option("--points", points_,
                    "Write every visible point: x y z red green blue size; - for standard "
                    "output")
        ->type_name("OUT.txt");
    options.add_flag("--force", force_, "Replace a file that has the name of --points already");
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
    picture_.Read();
    if (picture_.Size()) camera_.SetViewport(*picture_.Size());
    if (picture_.Wanted())
        PointPicture::RequireMemory(picture_.Size().value_or(camera_.GetViewport()));
    CheckOutputs();
    Interrupt::Catch();

    LoadedPointSet pointSet(file_);
    pointSet.SetBudget(options_.Budget());
    options_.SetUp(*pointSet);
    options_.SetLevel(pointSet);
    const OdGeMatrix3d& matrix = options_.Matrix();
    const ViewCamera camera = chooseCamera(pointSet, camera_, options_);
    const Stopwatch stopwatch;
    pointSet.Update(camera, matrix);
    const ViewReport report = pointSet.Report(stopwatch.Seconds());
    Interrupt::Check();
    if (const auto reason = pointSet.WhyEmpty(camera, PictureSize(), matrix)) Warn(*reason);
    if (const auto reason = pointSet.WhyCoarser()) Warn(*reason);

    if (picture_.Wanted()) WriteImage(pointSet, camera);
    if (!points_.empty()) WritePoints(pointSet);
    if (!diagnostics_.empty()) {
        pointSet.WriteDiagnostics(diagnostics_);
        TellWritten(diagnostics_, "the view's values and shapes");
    }
    if (report_)
        print(report.ToJson());
    else if (!picture_.Wanted() && points_.empty() && diagnostics_.empty())
        print(file_ + "\n" + report.ToText());
    return exitDone;
}

Viewport ViewCommand::PictureSize() const {
    return picture_.Size().value_or(camera_.GetViewport());
}

void ViewCommand::CheckOutputs() const {
    if (picture_.Wanted() && isSameFile(picture_.File(), points_))
        throw CommandUsageError("--image and --points both name '" + points_ +
                                "'; give them different names");
    for (const std::string& output : {picture_.File(), points_})
        requireOtherFile(output, file_, "the tree file itself");
    if (picture_.Wanted()) requirePictureOrNothing(picture_.File());
    if (PointsGoToStandardOutput() && report_)
        throw CommandUsageError("--report and --points - both write to standard output");
    if (points_.empty() || PointsGoToStandardOutput()) return;
    requireTextName(points_);
    if (!force_) requireNoFile(points_);
}

void ViewCommand::WriteImage(const LoadedPointSet& pointSet, const ViewCamera& camera) const {
    const Viewport size = PictureSize();
    const PointPicture picture = PointPicture::Draw(pointSet, camera, size, options_, picture_);
    Interrupt::Check();
    writePng(picture_.File(), picture.image);
    const std::string points = std::to_string(pointSet->getNrVisiblePoints()) + " points";
    TellWritten(picture_.File(), std::to_string(size.width) + " x " + std::to_string(size.height) +
                                     " pixels of " + points + ", coloured by " +
                                     picture.colouredBy);
}

void ViewCommand::WritePoints(const LoadedPointSet& pointSet) const {
    if (PointsGoToStandardOutput()) return WritePoints(pointSet, writeStandardOutput);
    writeOutputFile(points_, [&](ReplacementFile& file) {
        WritePoints(pointSet, [&](std::string_view bytes) { file.Write(bytes); });
    });
    TellWritten(points_, std::to_string(pointSet->getNrVisiblePoints()) + " points");
}

void ViewCommand::WritePoints(const LoadedPointSet& pointSet,
                              const std::function<void(std::string_view)>& write) const {
    const unsigned long long points = pointSet->getNrVisiblePoints();
    const OdGePoint3d* const coordinates = pointSet->getPointCoordinates();
    const OdCmEntityColor* const colours = pointSet->getPointColors();
    const double* const sizes = pointSet->getPointSizes();
    for (unsigned long long i = 0; i < points; ++i) {
        Interrupt::CheckSometimes(i);
        TextLine line;
        for (const double value : {coordinates[i].x, coordinates[i].y, coordinates[i].z})
            line.AddGeneral(value, allDigits);
        for (const int channel : {colours[i].red(), colours[i].green(), colours[i].blue()})
            line.Add(channel);
        line.AddGeneral(sizes[i], allDigits);
        line.End();
        write({line.Data(), line.Size()});
    }
}

bool ViewCommand::PointsGoToStandardOutput() const {
    return points_ == standardOutputName;
}

void ViewCommand::TellWritten(const std::string& file, const std::string& what) const {
    if (!report_ && !PointsGoToStandardOutput()) print(file + ": " + what + "\n");
}

}  // namespace vpc
