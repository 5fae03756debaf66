#include "vpc/tree/VerifyCommand.h"

#include <cstdio>
#include <map>

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>

#include "core/geometry/VpcPoint3D.h"
#include "tree/verify/TreeVerifier.h"
#include "vpc/common/Counted.h"
#include "vpc/common/Interrupt.h"
#include "vpc/common/Progress.h"
#include "vpc/common/TreeFile.h"

namespace vpc {

namespace {

using Json = nlohmann::ordered_json;

/// What is wrong with one file. Beyond a hundred findings of one kind the rest is only counted: one
/// wrong size can make every position behind it wrong.
class Findings {
public:
    explicit Findings(PointTreeReader& tree) {
        Progress progress;
        progress.Begin("checking points", tree.Size() / VpcPoint3D::recordSize);
        TreeVerifier(
            tree, [&](const Finding& finding) { Add(finding); },
            [&](unsigned long long points) {
                Interrupt::Check();
                progress.Add(points);
            })
            .Run();
    }

    unsigned long long Count() const { return count_; }
    /// Prints how many there are, behind `name`, and then all by kind; what is wrong with the file
    /// as a whole comes first.
    void Print(const std::string& name) const {
        std::printf("%s%s\n", name.c_str(), Summary().c_str());
        for (const auto& [kind, findings] : kinds_) {
            const std::string kindName = FileTools::ToNativePath(FindingKindName(kind));
            for (const wxString& text : findings.texts)
                std::printf("%s: %s\n", kindName.c_str(), FileTools::ToNativePath(text).c_str());
            if (findings.more > 0)
                std::printf("%s: %llu more of this kind\n", kindName.c_str(), findings.more);
        }
    }
    Json ToJson() const {
        Json list = Json::array();
        for (const auto& [kind, findings] : kinds_) {
            Json texts = Json::array();
            for (const wxString& text : findings.texts) texts.push_back(text.utf8_string());
            list.push_back({{"kind", FindingKindName(kind).utf8_string()},
                            {"texts", texts},
                            {"more", findings.more}});
        }
        return {{"faults", count_}, {"findings", list}};
    }

private:
    std::string Summary() const {
        if (count_ == 0) return "no faults found";
        return counted(count_, "fault") + " found";
    }

    static constexpr std::size_t textsOfAKind = 100;

    struct OfOneKind {
        std::vector<wxString> texts;
        /// How many there are beside them.
        unsigned long long more = 0;
    };

    void Add(const Finding& finding) {
        ++count_;
        OfOneKind& findings = kinds_[finding.kind];
        if (findings.texts.size() < textsOfAKind)
            findings.texts.push_back(finding.text);
        else
            ++findings.more;
    }

    unsigned long long count_ = 0;
    std::map<FindingKind, OfOneKind> kinds_;
};

}  // namespace

VerifyCommand::VerifyCommand(CLI::App& app)
    : Command(app, "verify", "Check everything in tree files; exit status 1 for any fault") {
    Options().add_option("FILE", files_, "The tree files")->required()->type_name("FILE.vpt");
    Options().add_flag("--json", json_, "Answer in JSON");
}

int VerifyCommand::Run() {
    Interrupt::Catch();
    bool sound = true;
    Json answers = Json::array();
    for (const std::string& file : files_) {
        Json answer = {{"file", FileTools::FromNativePath(file).utf8_string()}};
        try {
            const Findings findings(*openTreeFile(file));
            answer.update(findings.ToJson());
            if (!json_) findings.Print(files_.size() > 1 ? file + ": " : "");
            sound = sound && findings.Count() == 0;
        } catch (const CommandInterrupted&) {
            throw;
        } catch (const CommandError& error) {
            // The other files are checked all the same.
            std::fprintf(stderr, "vpc %s: %s\n", Name().c_str(), error.what());
            answer["error"] = error.what();
            sound = false;
        }
        answers.push_back(std::move(answer));
    }
    if (json_)
        std::printf("%s\n", answers.dump(2, ' ', false, Json::error_handler_t::replace).c_str());
    return sound ? exitDone : exitFailed;
}

}  // namespace vpc
