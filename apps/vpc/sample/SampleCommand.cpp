#include "vpc/sample/SampleCommand.h"

#include <cstdio>

#include <CLI/CLI.hpp>

#include "core/util/FileTools.h"
#include "io/FileIoFactory.h"
#include "vpc/common/Interrupt.h"
#include "vpc/common/OutputFile.h"
#include "vpc/common/OutputGuard.h"
#include "vpc/sample/SampleWriter.h"

namespace vpc {

namespace {
constexpr unsigned long long mostPoints = 1000000000000ULL;
}

SampleCommand::SampleCommand(CLI::App& app)
    : Command(app, "sample", "Write a made-up scan: hills, houses and trees, in colour") {
    CLI::App& options = Options();
    options
        .add_option("OUT", output_,
                    "The scan to write: its extension (las, pts or ptx) "
                    "tells the format")
        ->required()
        ->type_name("OUT.las|pts|ptx");
    options.add_option("--points", points_, "How many points, about ten a square metre")
        ->check(CLI::Range(1ULL, mostPoints))
        ->capture_default_str()
        ->type_name("N");
    options.add_option("--seed", seed_, "Which landscape; the same seed gives the same file")
        ->capture_default_str()
        ->type_name("S");
    options
        .add_option("--format", format_,
                    "LAS point format: 3 (LAS 1.2) or 7 (LAS 1.4) "
                    "[default: 3]")
        ->check(CLI::IsMember({3, 7}))
        ->type_name("3|7");
    options
        .add_option("--order", order_,
                    "Order of a LAS file's points: flight (as they are measured) or random (the "
                    "same points, shuffled)")
        ->check(CLI::IsMember({"flight", "random"}))
        ->capture_default_str()
        ->type_name("flight|random");
    options.add_flag("--force", force_, "Replace a file that has the output's name already");
}

int SampleCommand::Run() {
    const std::unique_ptr<SampleWriter> writer = MakeWriter();
    Interrupt::Catch();
    if (!force_) requireNoFile(output_);
    writeOutputFile(output_, [&](ReplacementFile& file) { writer->Write(file); });
    std::printf("%s: %llu points\n", output_.c_str(), points_);
    return exitDone;
}

void SampleCommand::RefuseAsNoLas(const std::string& option) const {
    throw CommandUsageError(option + " is for LAS files, which '" + output_ +
                            "' is not by its extension");
}

std::unique_ptr<SampleWriter> SampleCommand::MakeWriter() const {
    const VpcDataFormat kind = FileIoFactory::GetDataFormat(FileTools::FromNativePath(output_));
    const SampleOrder order = order_ == "random" ? SampleOrder::random : SampleOrder::flight;
    if (kind != DataFormat_LAS && format_ != 0) RefuseAsNoLas("--format");
    if (kind != DataFormat_LAS && order == SampleOrder::random) RefuseAsNoLas("--order random");
    switch (kind) {
        case DataFormat_LAS:
            if (format_ != 7 && points_ > SampleWriter::mostPointsOfLas12)
                throw CommandUsageError(
                    "LAS 1.2 holds no more than 4294967295 points; "
                    "use --format 7");
            return SampleWriter::Las(points_, seed_, format_, order);
        case DataFormat_PTS:
            return SampleWriter::Pts(points_, seed_);
        case DataFormat_PTX:
            return SampleWriter::Ptx(points_, seed_);
        default:
            throw CommandUsageError("'" + output_ +
                                    "' must end in .las, .pts or .ptx, all small or all capital "
                                    "letters, which tells the format to write");
    }
}

}  // namespace vpc
