#include "vpc/view/PickCommand.h"

#include <cstdio>

#include <CLI/CLI.hpp>

#include "core/util/DisplayText.h"
#include "vpc/common/NumberList.h"
#include "vpc/view/LoadedPointSet.h"

namespace vpc {

PickCommand::PickCommand(CLI::App& app)
    : Command(app, "pick", "Find the point that a click into a view would pick"),
      camera_(Options()) {
    CLI::App& options = Options();
    options.add_option("FILE", file_, "The tree file")->required()->type_name("FILE.vpt");
    options
        .add_option("--at", atText_,
                    "Where the click is: any point of the line from the eye through the cursor")
        ->required()
        ->type_name("X,Y,Z");
    options.add_option("--box", box_, "Width and height of the box around the cursor, in pixels")
        ->check(CLI::Range(1, Viewport::largestSide))
        ->capture_default_str()
        ->type_name("PIXELS");
    options.footer(
        "Prints the point's coordinates. Exit status 1 where there is none: only points that the "
        "view shows can be picked.");
}

int PickCommand::Run() {
    camera_.Read();
    const auto at = NumberList::Require(atText_, 3, "--at", "X,Y,Z");
    LoadedPointSet pointSet(file_);
    const OdGeMatrix3d identity;
    const ViewCamera camera = camera_.Choose(pointSet.Corners(identity));
    pointSet.Update(camera, identity);
    const auto point = pointSet.Pick(camera, identity, {at[0], at[1], at[2]}, box_);
    if (!point)
        throw CommandError("no point is shown within the box of " + std::to_string(box_) +
                           " pixels at " + atText_ +
                           "; point elsewhere, enlarge --box or move the camera closer");
    std::printf("%s %s %s\n", DisplayText::Exact(point->x).c_str(),
                DisplayText::Exact(point->y).c_str(), DisplayText::Exact(point->z).c_str());
    return exitDone;
}

}  // namespace vpc
