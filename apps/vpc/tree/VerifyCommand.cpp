#include "vpc/tree/VerifyCommand.h"

#include <cstdio>
#include <map>

#include <CLI/CLI.hpp>

#include "tree/verify/TreeVerifier.h"
#include "vpc/common/Command.h"
#include "vpc/common/TreeFile.h"

namespace vpc {

namespace {

/// Prints findings as they turn up. Beyond a hundred of one kind the rest is only counted: one
/// wrong size can make every position behind it wrong.
class FindingPrinter {
public:
    void Print(const Finding& finding) {
        if (++counts_[finding.kind] > printedOfAKind) return;
        std::printf("%s: %s\n", Name(finding.kind).c_str(),
                    FileTools::ToNativePath(finding.text).c_str());
    }
    /// Prints what was left out, or that there was nothing to find. Gives the number of faults.
    unsigned long long PrintSummary() const {
        unsigned long long all = 0;
        for (const auto& [kind, count] : counts_) {
            all += count;
            if (count > printedOfAKind)
                std::printf("%s: %llu more of this kind\n", Name(kind).c_str(),
                            count - printedOfAKind);
        }
        if (all == 0)
            std::printf("no faults found\n");
        else
            std::printf("%llu %s found\n", all, all == 1 ? "fault" : "faults");
        return all;
    }

private:
    static constexpr unsigned long long printedOfAKind = 100;

    static std::string Name(FindingKind kind) {
        return FileTools::ToNativePath(FindingKindName(kind));
    }

    std::map<FindingKind, unsigned long long> counts_;
};

}  // namespace

VerifyCommand::VerifyCommand(CLI::App& app)
    : Command(app, "verify", "Check everything in a tree file; exit status 1 for any fault") {
    Options().add_option("FILE", file_, "The tree file")->required()->type_name("FILE.vpt");
}

int VerifyCommand::Run() {
    const auto tree = openTreeFile(file_);
    FindingPrinter printer;
    TreeVerifier(*tree, [&](const Finding& finding) { printer.Print(finding); }).Run();
    return printer.PrintSummary() > 0 ? exitFailed : exitDone;
}

}  // namespace vpc
