#include "vpc/view/PickCommand.h"

#include <cmath>
#include <cstdio>

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include "core/geometry/NumberText.h"
#include "core/util/DisplayText.h"
#include "vpc/common/NumberList.h"
#include "vpc/view/Framing.h"
#include "vpc/view/LoadedPointSet.h"
#include "vpc/view/PictureFrame.h"

namespace vpc {

namespace {

/// How far a point lies from the line of a click.
double distanceFromLine(const ViewCamera& camera, const VpcVector3D& at, const VpcVector3D& p) {
    const VpcVector3D direction = camera.perspective ? at - camera.eye : camera.target - camera.eye;
    return direction.Cross(p - at).Magnitude() / direction.Magnitude();
}

}  // namespace

PickCommand::PickCommand(CLI::App& app)
    : Command(app, "pick", "Find the point that a click into a view would pick"),
      camera_(Options()),
      shown_(Options()) {
    CLI::App& options = Options();
    options.add_option("FILE", file_, "The tree file")->required()->type_name("FILE.vpt");
    auto* at =
        options
            .add_option("--at", atText_,
                        "Where the click is: any point of the line from the eye through the cursor")
            ->type_name("X,Y,Z");
    options
        .add_option("--pixel", pixelText_,
                    "Where the click is: column and row of a pixel, from 0 at the top left, of the "
                    "picture that view --image draws with the same camera")
        ->excludes(at)
        ->type_name("X,Y");
    options
        .add_option("--size", sizeText_,
                    "Width and height of that picture in pixels, default: the viewport's")
        ->type_name("WxH");
    options.add_option("--box", box_, "Width and height of the box around the cursor, in pixels")
        ->check(CLI::Range(1, Viewport::largestSide))
        ->capture_default_str()
        ->type_name("PIXELS");
    options.add_flag("--json", json_, "Answer in JSON");
    options.footer(
        "Examples:\n"
        "  vpc pick scan.vpt --pixel 640,400\n"
        "  vpc pick scan.vpt --pixel 400,300 --size 800x600 --box 9 --json\n"
        "  vpc pick scan.vpt --at 458050,5428050,280 --eye 458050,5428050,500 --box 9\n"
        "Prints the point's coordinates, and below them its colour, its intensity and how far it "
        "is from the click's line. Exit status 1 where there is none: only points that the view "
        "shows can be picked.");
}

int PickCommand::Run() {
    camera_.Read();
    shown_.Read();
    size_ = camera_.GetViewport();
    if (!sizeText_.empty()) {
        size_ = Viewport::Parse(sizeText_, "--size");
        camera_.SetViewport(size_);
    }
    CheckClick();
    LoadedPointSet pointSet(file_);
    pointSet.SetBudget(shown_.Budget());
    shown_.SetUp(*pointSet);
    shown_.SetLevel(pointSet);
    const OdGeMatrix3d& matrix = shown_.Matrix();
    const ViewCamera camera = chooseCamera(pointSet, camera_, shown_);
    pointSet.Update(camera, matrix);
    if (const auto reason = pointSet.WhyEmpty(camera, size_, matrix)) throw CommandError(*reason);
    if (const auto reason = pointSet.WhyCoarser()) Warn(*reason);

    const VpcVector3D at = ClickedAt(camera);
    const auto point = pointSet.Pick(camera, matrix, {at.x, at.y, at.z}, box_);
    if (!point)
        throw CommandError("no point is shown within the box of " + std::to_string(box_) +
                           " pixels at " + (pixelText_.empty() ? atText_ : "pixel " + pixelText_) +
                           "; point elsewhere, enlarge --box or move the camera closer");
    Print(*point, distanceFromLine(camera, at, {point->at.x, point->at.y, point->at.z}));
    return exitDone;
}

void PickCommand::CheckClick() const {
    if (atText_.empty() && pixelText_.empty())
        throw CommandUsageError("say where the click is: --pixel X,Y or --at X,Y,Z");
    if (!atText_.empty()) {
        if (!sizeText_.empty()) throw CommandUsageError("--size is for --pixel");
        NumberList::Require(atText_, 3, "--at", "X,Y,Z");
        return;
    }
    const auto pixel = NumberList::Require(pixelText_, 2, "--pixel", "X,Y");
    const auto isWithin = [](double n, int count) {
        return n >= 0.0 && n < count && n == std::floor(n);
    };
    if (!isWithin(pixel[0], size_.width) || !isWithin(pixel[1], size_.height))
        throw CommandUsageError("--pixel takes a column from 0 to " +
                                std::to_string(size_.width - 1) + " and a row from 0 to " +
                                std::to_string(size_.height - 1) + "; '" + pixelText_ +
                                "' is not in the picture, whose size --size tells");
}

VpcVector3D PickCommand::ClickedAt(const ViewCamera& camera) const {
    if (!atText_.empty()) {
        const auto at = NumberList::Require(atText_, 3, "--at", "X,Y,Z");
        return {at[0], at[1], at[2]};
    }
    const auto pixel = NumberList::Require(pixelText_, 2, "--pixel", "X,Y");
    return PictureFrame(camera, size_).At(pixel[0], pixel[1]);
}

void PickCommand::Print(const PickedPoint& found, double distance) const {
    const VpcPoint3D& stored = found.stored;
    if (json_) {
        const nlohmann::ordered_json answer = {{"point", {found.at.x, found.at.y, found.at.z}},
                                               {"colour", {stored.red, stored.green, stored.blue}},
                                               {"intensity", stored.intensity},
                                               {"distanceFromLine", distance}};
        std::printf("%s\n", answer.dump(2).c_str());
        return;
    }
    std::printf("%s %s %s\n", DisplayText::Exact(found.at.x).c_str(),
                DisplayText::Exact(found.at.y).c_str(), DisplayText::Exact(found.at.z).c_str());
    std::printf("colour     %d %d %d\n", stored.red, stored.green, stored.blue);
    std::printf("intensity  %s\n", DisplayText::Exact(stored.intensity).c_str());
    std::printf("distance   %s from the click's line\n", generalText(distance, 4).c_str());
}

}  // namespace vpc
