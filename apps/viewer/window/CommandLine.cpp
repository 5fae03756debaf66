#include "viewer/window/CommandLine.h"

#include <map>

#include <CLI/CLI.hpp>

#include "viewer/panels/BudgetRange.h"

namespace vpc::viewer {

namespace {

constexpr const char* examples =
    "Examples:\n"
    "  vpc-viewer                          start with an empty window\n"
    "  vpc-viewer scan.vpt                 look at a point tree file\n"
    "  vpc-viewer east.las west.las        prepare scans and look at them\n"
    "  vpc-viewer site.vpcview             go on where a session was saved\n"
    "\n"
    "Exit status: 0 done, 1 failed, 2 wrong usage.";

draw::ImageSize sizeOf(const std::string& text) {
    const std::size_t cross = text.find('x');
    draw::ImageSize size;
    const bool isSize = cross != std::string::npos &&
                        CLI::detail::lexical_cast(text.substr(0, cross), size.width) &&
                        CLI::detail::lexical_cast(text.substr(cross + 1), size.height) &&
                        size.width >= 320 && size.height >= 240 && size.width <= 16384 &&
                        size.height <= 16384;
    if (!isSize)
        throw CLI::ValidationError("--window", "\"" + text +
                                                   "\" is no size such as 1280x800; each number "
                                                   "lies from 320 or 240 to 16384");
    return size;
}

}  // namespace

CommandLine CommandLine::Parse(int argc, char** argv) {
    CommandLine line;
    CLI::App app("Shows point clouds: turns, cuts, picks, measures and colours them.",
                 "vpc-viewer");
    app.set_version_flag("--version", "vpc-viewer " VPC_PROGRAM_VERSION);
    app.footer(examples);
    app.add_option("FILE", line.files,
                   "Point tree files (.vpt), a session (.vpcview), or scans to prepare");
    const std::map<std::string, RendererChoice> renderers{
        {"auto", RendererChoice::Auto}, {"gl", RendererChoice::Gl}, {"cpu", RendererChoice::Cpu}};
    app.add_option("--renderer", line.renderer,
                   "What draws: gl (the graphics card), cpu, or auto (default): the card where "
                   "there is one")
        ->option_text("auto|gl|cpu")
        ->transform(CLI::CheckedTransformer(renderers));
    app.add_option_function<std::string>(
           "--window", [&line](const std::string& text) { line.windowSize = sizeOf(text); },
           "Size of the window in pixels")
        ->option_text("WxH");
    app.add_option("--budget", line.pointBudget, "How many points are shown at most")
        ->option_text("N")
        ->check(CLI::Range(BudgetRange::least, BudgetRange::most));
    app.add_option("--session", line.sessionFile, "A session to open, whatever its name")
        ->option_text("FILE");
    app.add_option("--plugin", line.pluginFile,
                   "The point-cloud plug-in; by default the one that belongs to the program")
        ->option_text("FILE");
    app.add_option("--report", line.reportFile,
                   "Write the program's state as JSON at exit and on Ctrl+Shift+F12")
        ->option_text("FILE");
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        throw Ended(app.exit(error) == 0 ? 0 : 2);
    }
    return line;
}

}  // namespace vpc::viewer
