#include "vpc/tree/VerifyCommand.h"

#include <cstdio>

#include <CLI/CLI.hpp>

#include "vpc/Findings.h"
#include "vpc/TreeVerifier.h"
#include "vpc/common/Command.h"
#include "vpc/common/TreeFile.h"

namespace vpc {

VerifyCommand::VerifyCommand(CLI::App& app)
    : Command(app, "verify", "Check everything in a tree file; exit status 1 for any fault") {
    Options().add_option("FILE", file_, "The tree file")->required()->type_name("FILE.vpt");
}

int VerifyCommand::Run() {
    requireTreeFile(file_);
    const VpcDiskTreeQuerier querier(hostString(file_));
    Findings findings;
    TreeVerifier(querier, findings).Run();
    findings.PrintSummary();
    return findings.Any() ? exitFailed : exitDone;
}

}  // namespace vpc
