// Drives vpc-viewer in a window of 1200 by 800 pixels under an X server that shows nothing, as the
// tests do, and prints what it took, a name and a number on each line:
//   start_s        from the start to the first finished picture, or to an empty window
//   shown          points in that picture
//   change_s       from a turn of the view to the finished picture of its own points: the median;
//                  with the pause that the program makes before it asks for them
//   update_s       the plug-in's part of that: the median
//   frame_s        one picture while the view turns: the longest
//   block_s        the longest time that the window did not answer, opening the file or turning
//   peak_bytes     the most memory that the program had
//
// Usage: vpc_viewer_drive CHANGES [ARGUMENT OF VPC-VIEWER...]

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <exception>
#include <string>
#include <vector>

#include "viewer/window/ViewerRun.h"
#include "viewer/window/XvfbServer.h"

namespace {

using vpc::test::Pixel;
using vpc::test::ViewerRun;
using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

double median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

/// The most memory that a process had, in bytes.
long long peakBytes(pid_t process) {
    std::istringstream status(vpc::test::readBytes("/proc/" + std::to_string(process) + "/status"));
    for (std::string word; status >> word;)
        if (long long kibibytes = 0; word == "VmHWM:" && status >> kibibytes)
            return kibibytes * 1024;
    throw std::runtime_error("the system does not tell of the memory");
}

void drive(int changes, const std::string& arguments) {
    const vpc::test::XvfbServer server;
    const vpc::test::TempFolder folder;
    const auto start = Clock::now();
    ViewerRun viewer(server.Display(), folder.path(), arguments);
    std::printf("start_s %.6f\n", secondsSince(start));
    const auto shown = viewer.Last().at("shown").get<long long>();
    std::printf("shown %lld\n", shown);
    std::vector<double> took, updates;
    double longestFrame = 0, longestBlock = viewer.Last().at("longestBlockMs");
    const Pixel middle(viewer.Size().width / 2, viewer.Size().height / 2);
    for (int i = 0; i < changes; ++i) {
        const auto turned = Clock::now();
        viewer.Drag(middle, middle + Pixel(i % 2 == 0 ? 40 : -40, 0));
        const auto& report = viewer.Report();
        took.push_back(secondsSince(turned));
        updates.push_back(report.at("updateMs"));
        longestFrame = std::max<double>(longestFrame, report.at("frameMs"));
        longestBlock = std::max<double>(longestBlock, report.at("longestBlockMs"));
        if (report.at("shown").get<long long>() < shown / 10 * 9)
            throw std::runtime_error("a turn lost points from the view");
    }
    if (changes > 0)
        std::printf("change_s %.6f\nupdate_s %.6f\nframe_s %.6f\n", median(took),
                    median(updates) / 1e3, longestFrame / 1e3);
    std::printf("block_s %.6f\n", longestBlock / 1e3);
    std::printf("peak_bytes %lld\n", peakBytes(viewer.Id()));
    viewer.Close();
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fprintf(stderr, "usage: vpc_viewer_drive CHANGES [ARGUMENT OF VPC-VIEWER...]\n");
        return 2;
    }
    std::string arguments;
    for (int i = 2; i < argc; ++i) arguments += " \"" + std::string(argv[i]) + "\"";
    try {
        drive(std::stoi(argv[1]), arguments);
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "vpc_viewer_drive: %s\n", error.what());
        return 1;
    }
}
