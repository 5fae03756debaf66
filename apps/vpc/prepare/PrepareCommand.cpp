#include "vpc/prepare/PrepareCommand.h"

#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <new>
#include <optional>
#include <system_error>

#include <CLI/CLI.hpp>

#include "core/util/DisplayText.h"
#include "core/util/DrawingUnits.h"
#include "core/util/FileTools.h"
#include "core/util/StringTools.h"
#include "core/util/TemporaryOwner.h"
#include "core/util/VpcLogger.h"
#include "tree/construct/PrepareChecks.h"
#include "vpc/common/Interrupt.h"
#include "vpc/common/OutputFile.h"
#include "vpc/common/OutputGuard.h"
#include "vpc/common/SystemMemory.h"
#include "vpc/scan/ScanList.h"
#include "vpc/scan/ScanSet.h"
#include "vpc/unit/UnitChoice.h"

namespace vpc {

namespace {

/// Far deeper than any scan needs. Where points coincide, every level is built and costs memory and
/// time.
constexpr unsigned long long deepestLevel = 60;
/// Less makes a run slow and saves little: what a run needs beside the points takes more.
constexpr unsigned long long leastMemory = 16ULL << 20U;

wxString fullPath(const std::string& native) {
    return FileTools::FromNativePath(std::filesystem::absolute(native).string());
}

/// Keeps the process-wide log open for one run.
class RunLog {
public:
    explicit RunLog(const std::string& file) {
        if (!file.empty()) VpcLogger::Instance()->Open(fullPath(file));
    }
    ~RunLog() { VpcLogger::Instance()->Close(); }
    RunLog(const RunLog&) = delete;
    RunLog& operator=(const RunLog&) = delete;
};

/// A new folder for one run's temporary files. This object removes it at its end, with all that is
/// in it.
class WorkFolder {
public:
    /// Makes the folder within `parent`. Throws CommandError where that cannot be done.
    explicit WorkFolder(const std::string& parent)
        : path_(parent + "/" + TemporaryOwner::NameStart(TemporaryOwner::folderPrefix) + "XXXXXX") {
        if (mkdtemp(path_.data()) == nullptr)
            throw CommandError("no temporary folder can be made in '" + parent + "' (" +
                               std::generic_category().message(errno) +
                               "); name a folder that can be written with --work");
        owner_.emplace(path_);
    }
    ~WorkFolder() {
        // Mostly it is empty. Then rmdir suffices, which opens no file: there may be no descriptor
        // left.
        if (rmdir(path_.c_str()) == 0) return;
        std::error_code ignored;  // nothing is left to be done about a folder that stays
        std::filesystem::remove_all(path_, ignored);
    }
    WorkFolder(const WorkFolder&) = delete;
    WorkFolder& operator=(const WorkFolder&) = delete;

    /// The folder's path, ending with a separator.
    std::string Path() const { return path_ + "/"; }

private:
    std::string path_;
    std::optional<TemporaryOwner> owner_;
};

void log(const wxString& text) {
    VpcLogger::Instance()->Add(text, false);
}

/// The remedy for a finding; names the program's options where they help.
wxString remedyOf(const PrepareFinding& finding) {
    switch (finding.kind) {
        case PrepareFinding::Kind::LogNotWritable:
            return "choose another name with --log";
        case PrepareFinding::Kind::NoNewFiles:
            return "change its rights or name another folder with -o or --work";
        case PrepareFinding::Kind::NoRoom:
            return "make room, name other folders with --work and -o, or go on with --force";
        default:
            return finding.remedy;
    }
}

/// For a size whose unit has been resolved, so that the text is the number of bytes.
std::string checkMemory(const std::string& text) {
    unsigned long long bytes = 0;
    const char* const end = text.data() + text.size();
    const auto [rest, fault] = std::from_chars(text.data(), end, bytes);
    if (fault == std::errc::invalid_argument || rest != end)
        return "'" + text + "' is no size; write 512M or 2G, for example";
    if (fault != std::errc() || bytes > systemMemory())
        return "it must fit into the machine's memory of " + DisplayText::Bytes(systemMemory());
    if (bytes < leastMemory)
        return "it must be at least " + std::to_string(leastMemory >> 20U) + "M";
    return {};
}

}  // namespace

PrepareCommand::PrepareCommand(CLI::App& app)
    : Command(app, "prepare",
              "Turn scans (LAS, PTX, or PTS and other text; all of one format) into a tree file") {
    CLI::App& options = Options();
    options
        .add_option("SCAN", options_.scans,
                    "The scans, in the order their points refer to: files, folders (the scans in "
                    "them, sorted by name) and lists (@list.txt, a name a line)")
        ->required();
    options.add_option("-o,--output", options_.output, "The tree file to write, named .vpt")
        ->required()
        ->type_name("OUT.vpt");
    options.add_option("--tree", options_.tree, "Kind of tree: octree or kd")
        ->check(CLI::IsMember({"octree", "kd"}))
        ->capture_default_str()
        ->type_name("KIND");
    options
        .add_option("--max-points", options_.maxPoints,
                    "Points at which a node is split; fewer make finer steps and more nodes")
        ->check(CLI::Range(1ULL, 1000000000ULL))
        ->capture_default_str()
        ->type_name("N");
    options
        .add_option("--max-level", options_.maxLevel,
                    "Deepest level that splits may reach (0 to 60); nodes there grow past "
                    "--max-points")
        ->check(CLI::Range(0ULL, deepestLevel))
        ->capture_default_str()
        ->type_name("N");
    options
        .add_option("--unit", unitText_,
                    "Unit of the coordinates: auto (what the scans name, else metres), or a code "
                    "or name: us-ft, " +
                        DrawingUnits::List())
        ->check(CLI::Validator(UnitChoice::Fault, ""))
        ->capture_default_str()
        ->type_name("UNIT");
    options
        .add_option("--memory", options_.memory,
                    "Memory for points, at least 16M; points that find no room in it wait in a "
                    "temporary file. More makes a run faster or changes nothing")
        ->transform(CLI::AsSizeValue(false).description(""))
        ->check(CLI::Validator(checkMemory, ""))
        ->default_str(std::to_string(PcCorePointPrepare::defaultPointMemory >> 20U) + "M")
        ->type_name("SIZE");
    options
        .add_option("--work", options_.work,
                    "Folder for temporary files, default: the output's; a subfolder is made "
                    "there and removed again")
        ->type_name("DIR");
    options.add_option("--log", options_.log, "Log the run to this file")->type_name("FILE");
    options
        .add_option("--text", options_.text,
                    "How texts are read: auto takes header lines, commas, semicolons, a decimal "
                    "comma and a missing count; strict takes plain PTS and PTX only")
        ->check(CLI::IsMember({"auto", "strict"}))
        ->capture_default_str()
        ->type_name("HOW");
    options.add_flag("--allow-incomplete", options_.allowIncomplete,
                     "Go on with the points that are there when points are missing or cannot be "
                     "read; those are left out");
    options.add_flag("--skip-bad", options_.skipBad, "Leave out scans that cannot be used");
    options.add_flag("--quiet", options_.quiet, "Print nothing but warnings and errors");
    options
        .add_option("--progress", options_.progress,
                    "How progress is told: words (a bar on a terminal, else a line now and then), "
                    "json (a line of JSON a step on standard output), or none")
        ->check(CLI::IsMember({"words", "json", "none"}))
        ->capture_default_str()
        ->type_name("HOW");
    options.add_flag("--json", options_.json,
                     "Print the summary as one line of JSON, with the warnings by file");
    options.add_flag("--force", options_.force, "Go on when the disk seems to lack room");
    options.footer(
        "Examples:\n"
        "  vpc prepare -o scan.vpt scan.las\n"
        "  vpc prepare --tree kd --max-points 50000 --unit Feet -o site.vpt east.pts west.pts\n"
        "  vpc prepare -o site.vpt scans/\n"
        "At its peak a run takes hardly more disk than its result, about 75 bytes a point and 111\n"
        "with --tree kd. Temporary files take up to 26 bytes a point of LAS and 50 of PTS and "
        "PTX.\n"
        "They shrink as the result grows, so they count only on another disk (--work), or where\n"
        "the file system takes no room back from an open file. A text that is not plain is copied\n"
        "there for the length of the run.\n"
        "Ctrl-C stops the run, removes its temporary files and leaves an older output as it was.");
}

int PrepareCommand::Run() {
    Interrupt::Catch();
    const auto start = Clock::now();
    // What a killed run left would take up room.
    TemporaryOwner::RemoveLeftovers(WorkParent());
    removeLeftoversBeside(options_.output);
    const ScanList list(options_.scans);
    std::optional<WorkFolder> work;  // outlives what the scans put into it
    ScanSet scans(list.Files(),
                  {{options_.allowIncomplete, options_.text == "strict"}, options_.skipBad});
    RequireChecks(scans);
    const RunLog runLog(options_.log);
    LogStart(scans);
    const CheckedScans checked = scans.Checked();
    ProgressDisplay display({ProgressStyle(), options_.quiet, checked.format,
                             checked.copyBytes != 0, checked.points, "vpc " + Name(),
                             [&](const wxString& message) { return scans.InUsersNames(message); }});
    for (const std::string& warning : list.Warnings())
        display.Warn(FileTools::FromNativePath(warning));
    work.emplace(WorkParent());
    const std::vector<std::string> given = scans.Names();
    SettleScans(scans, work->Path(), display);
    ChooseUnit(scans, display);
    const TreePrepareResult result = Prepare(scans, work->Path(), display);
    display.Clear();
    log(result.success ? wxString("Prepared") : "Failed: " + scans.InUsersNames(result.message));
    CheckResult(result, scans, display);
    if (!result.message.empty()) display.Warn(scans.InUsersNames(result.message));
    Tell(Report(result, start), display.Warnings(), given);
    return exitDone;
}

PrepareReport PrepareCommand::Report(const TreePrepareResult& result,
                                     Clock::time_point start) const {
    PrepareReport report = PrepareReport::Of(options_.output);
    report.unit = DrawingUnits::Name(options_.unit);
    report.time = FileTools::ToNativePath(result.elapsedTime);
    report.seconds = std::chrono::duration<double>(Clock::now() - start).count();
    return report;
}

ProgressDisplay::Style PrepareCommand::ProgressStyle() const {
    if (options_.progress == "json") return ProgressDisplay::Style::Json;
    const bool quiet = options_.quiet || options_.progress == "none";
    return quiet ? ProgressDisplay::Style::Quiet : ProgressDisplay::Style::Words;
}

std::string PrepareCommand::WorkParent() const {
    if (!options_.work.empty()) return options_.work;
    const std::string folder = std::filesystem::path(options_.output).parent_path().string();
    return folder.empty() ? "." : folder;
}

VpcTreeType PrepareCommand::TreeType() const {
    return options_.tree == "kd" ? Tree_KdTree_Symmetric : Tree_Octree;
}

void PrepareCommand::RequireChecks(const ScanSet& scans) const {
    std::vector<wxString> names;
    for (const std::string& scan : scans.Names()) names.push_back(FileTools::FromNativePath(scan));
    PrepareChecks checks(FileTools::FromNativePath(WorkParent()), names,
                         FileTools::FromNativePath(options_.output), TreeType(), options_.maxPoints,
                         FileTools::FromNativePath(options_.log));
    checks.TakeScansAsChecked(scans.Checked());
    for (PrepareFinding finding : checks.Run()) {
        if (options_.force && finding.kind == PrepareFinding::Kind::NoRoom) continue;
        finding.remedy = remedyOf(finding);
        throw CommandError(FileTools::ToNativePath(finding.Sentence()));
    }
    requireNoScan(options_.output);
    if (!options_.log.empty()) requireLogOrNothing(options_.log);
}

void PrepareCommand::SettleScans(ScanSet& scans, const std::string& workFolder,
                                 ProgressDisplay& display) const {
    RequireNoInterrupt();
    scans.Check(std::filesystem::absolute(workFolder).string(),
                [&](unsigned long long done, unsigned long long inAll) {
                    RequireNoInterrupt();
                    display.ShowChecking(done, inAll);
                });
    display.Clear();
    try {
        scans.Settle(Unchanged());
    } catch (const CommandError& refusal) {
        log("Failed: " + FileTools::FromNativePath(refusal.what()));
        throw;
    }
    for (const std::string& note : scans.Notes()) display.Note(FileTools::FromNativePath(note));
    for (const std::string& warning : scans.Warnings())
        display.Warn(FileTools::FromNativePath(warning));
}

void PrepareCommand::ChooseUnit(const ScanSet& scans, ProgressDisplay& display) {
    const UnitChoice unit = UnitChoice::Make(unitText_, scans.Names());
    options_.unit = unit.code;
    log("Unit: " + DrawingUnits::Name(unit.code));
    if (!unit.reason.empty()) display.Note(FileTools::FromNativePath(unit.reason));
    for (const std::string& warning : unit.warnings)
        display.Warn(FileTools::FromNativePath(warning));
}

TreePrepareResult PrepareCommand::Prepare(const ScanSet& scans, const std::string& workFolder,
                                          ProgressDisplay& display) const {
    return PcCorePointPrepare::preparePointData(
        options_.unit, fullPath(workFolder), scans.Sources(), fullPath(options_.output), TreeType(),
        options_.maxPoints, options_.maxLevel, display, options_.memory);
}

void PrepareCommand::CheckResult(const TreePrepareResult& result, const ScanSet& scans,
                                 ProgressDisplay& display) const {
    if (result.success) return;
    // The library's message names the exception; the program has a sentence for this one.
    if (result.message.Contains("std::bad_alloc")) throw std::bad_alloc();
    if (display.Objected() == ProgressDisplay::Objection::NoPoints)
        throw CommandError("'" + scans.Names().front() +
                           "' and the other scans, if any, hold no points that could be "
                           "prepared; get complete copies" +
                           Unchanged());
    if (display.Objected() == ProgressDisplay::Objection::TextChanged)
        throw CommandError(
            "a scan has become shorter since it was checked; start again when "
            "nothing writes to the scans" +
            Unchanged());
    RequireNoInterrupt();
    const wxString message = scans.InUsersNames(wxString(result.message).Trim(false));
    // The failure comes first, then what there was to say before it.
    const wxString warnings = message.AfterFirst('\n');
    if (!warnings.empty()) display.Warn(warnings);
    throw CommandError(FileTools::ToNativePath(message.BeforeFirst('\n')) + Unchanged());
}

void PrepareCommand::RequireNoInterrupt() const {
    if (Interrupt::Requested())
        throw CommandInterrupted("interrupted; temporary files are removed" + Unchanged());
}

std::string PrepareCommand::Unchanged() const {
    return "; '" + options_.output + "' was not touched";
}

void PrepareCommand::LogStart(const ScanSet& scans) const {
    log(wxString("vpc " VPC_PROGRAM_VERSION " prepares ") + fullPath(options_.output));
    for (const std::string& scan : scans.Names()) log("Scan: " + fullPath(scan));
    log(wxString::Format("Tree %s, at most %llu points a node, split down to level %llu",
                         options_.tree.c_str(), options_.maxPoints, options_.maxLevel));
}

void PrepareCommand::Tell(const PrepareReport& report, const std::vector<std::string>& warnings,
                          const std::vector<std::string>& scans) const {
    log(wxString::Format("%llu points, %llu levels, %llu nodes, %llu bytes, ", report.points,
                         report.levels, report.nodes, report.bytes) +
        FileTools::FromNativePath(report.time));
    if (options_.json)
        std::fputs(report.ToJson(warnings, scans).c_str(), stdout);
    else if (!options_.quiet)
        std::fputs(report.ToText().c_str(), stdout);
}

}  // namespace vpc
