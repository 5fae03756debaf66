#include <algorithm>
#include <array>
#include <clocale>
#include <cstdio>
#include <exception>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include <CLI/CLI.hpp>

#include "core/util/FileTools.h"
#include "vpc/common/Command.h"
#include "vpc/common/Interrupt.h"
#include "vpc/common/NearestName.h"
#include "vpc/export/ExportCommand.h"
#include "vpc/prepare/PrepareCommand.h"
#include "vpc/sample/SampleCommand.h"
#include "vpc/tree/InfoCommand.h"
#include "vpc/tree/VerifyCommand.h"
#include "vpc/view/PickCommand.h"
#include "vpc/view/ViewCommand.h"

namespace {

constexpr const char* examples =
    "Examples:\n"
    "  vpc sample scan.las --points 1000000 --seed 1   make up a scan to try things on\n"
    "  vpc prepare -o scan.vpt scan.las                turn it into a point tree file\n"
    "  vpc prepare --tree kd --unit feet -o site.vpt east.pts west.pts\n"
    "  vpc info scan.vpt                               say what is in it\n"
    "  vpc verify scan.vpt                             check it from end to end\n"
    "  vpc view scan.vpt --image scan.png              draw it\n"
    "  vpc pick scan.vpt --pixel 640,400               the point shown in the picture's middle\n"
    "  vpc export scan.vpt -o scan.ply                 its points as a scan again\n"
    "\n"
    "Exit status: 0 done, 1 failed, 2 wrong usage, 130 interrupted, 143 terminated.";

class Program {
public:
    Program() {
        app_.set_version_flag("--version", "vpc " VPC_PROGRAM_VERSION);
        app_.footer(examples);
        app_.require_subcommand(1);
    }

    int Run(int argc, char** argv) {
        for (int i = 1; i < argc; ++i)
            if (!IsReadable(argv[i])) return Unreadable();
        std::vector<std::string> arguments = Translated({argv + 1, argv + argc});
        if (IsUnknownCommand(arguments)) return UnknownCommand(arguments.front());
        const std::vector<std::string> typed = arguments;
        std::reverse(arguments.begin(), arguments.end());  // the parser takes them from the end
        try {
            app_.parse(std::move(arguments));
        } catch (const CLI::ParseError& error) {
            const int status = app_.exit(error) == 0 ? vpc::exitDone : vpc::exitWrongUsage;
            if (status != vpc::exitDone) SuggestOptions(typed);
            return status;
        }
        for (vpc::Command* command : commands_)
            if (command->Chosen()) return RunCommand(*command);
        return vpc::exitWrongUsage;
    }

private:
    /// Whether the argument's bytes survive the way into a text and back. They do not where a name
    /// is not in the user's encoding, and the program would look for a file of another name.
    static bool IsReadable(const std::string& argument) {
        return FileTools::ToNativePath(FileTools::FromNativePath(argument)) == argument;
    }
    static int Unreadable() {
        std::fputs(
            "vpc: an argument is neither in the encoding of the locale nor in UTF-8; rename "
            "the file\n",
            stderr);
        return vpc::exitWrongUsage;
    }

    /// The two commands that other programs have and users try: help and version.
    static std::vector<std::string> Translated(std::vector<std::string> arguments) {
        if (arguments.empty()) return arguments;
        if (arguments.front() == "version") return {"--version"};
        if (arguments.front() != "help") return arguments;
        if (arguments.size() > 1) return {arguments[1], "--help"};
        return {"--help"};
    }

    std::vector<std::string> CommandNames() const {
        std::vector<std::string> names = {"help", "version"};
        for (const vpc::Command* command : commands_) names.push_back(command->Name());
        return names;
    }

    bool IsUnknownCommand(const std::vector<std::string>& arguments) const {
        if (arguments.empty() || arguments.front().starts_with('-')) return false;
        const std::vector<std::string> names = CommandNames();
        return std::find(names.begin(), names.end(), arguments.front()) == names.end();
    }
    int UnknownCommand(const std::string& typed) const {
        const std::string nearest = vpc::nearestName(typed, CommandNames());
        const std::string advice =
            nearest.empty() ? "see vpc --help" : "did you mean '" + nearest + "'?";
        std::fprintf(stderr, "vpc: '%s' is no command; %s\n", typed.c_str(), advice.c_str());
        return vpc::exitWrongUsage;
    }

    /// After the parser's own complaint: names the options that were probably meant.
    void SuggestOptions(const std::vector<std::string>& typed) const {
        for (const vpc::Command* command : commands_) {
            if (typed.empty() || command->Name() != typed.front()) continue;
            const std::vector<std::string> names = command->OptionNames();
            for (const std::string& argument : typed) {
                const std::string option = argument.substr(0, argument.find('='));
                if (!option.starts_with("--") ||
                    std::find(names.begin(), names.end(), option) != names.end())
                    continue;
                const std::string nearest = vpc::nearestName(option, names);
                if (!nearest.empty())
                    std::fprintf(stderr, "vpc %s: '%s' is no option; did you mean '%s'?\n",
                                 command->Name().c_str(), option.c_str(), nearest.c_str());
            }
        }
    }

    static int RunCommand(vpc::Command& command) {
        const auto fail = [&](const char* text, int status) {
            std::fprintf(stderr, "vpc %s: %s\n", command.Name().c_str(), text);
            return status;
        };
        try {
            return Flushed(command.Run(), fail);
        } catch (const vpc::CommandInterrupted& error) {
            return fail(error.what(), 128 + vpc::Interrupt::Signal());
        } catch (const vpc::CommandUsageError& error) {
            return fail(error.what(), vpc::exitWrongUsage);
        } catch (const std::bad_alloc&) {
            return fail(
                "the memory does not suffice; close other programs or try with "
                "less data at a time",
                vpc::exitFailed);
        } catch (const std::exception& error) {
            return fail(error.what(), vpc::exitFailed);
        }
    }

    /// An answer that could not be printed in full (the disk is full, say) is no answer.
    template <class Fail>
    static int Flushed(int status, const Fail& fail) {
        if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0) return status;
        return fail("the output could not be written in full", vpc::exitFailed);
    }

    CLI::App app_{
        "Turns laser scans (LAS, PTS, PTX) into point tree files (vpt), checks and shows them",
        "vpc"};
    vpc::PrepareCommand prepare_{app_};
    vpc::InfoCommand info_{app_};
    vpc::VerifyCommand verify_{app_};
    vpc::SampleCommand sample_{app_};
    vpc::ViewCommand view_{app_};
    vpc::PickCommand pick_{app_};
    vpc::ExportCommand export_{app_};
    std::array<vpc::Command*, 7> commands_ = {&prepare_, &info_, &verify_, &sample_,
                                              &view_,    &pick_, &export_};
};

}  // namespace

int main(int argc, char** argv) {
    // File names arrive in the user's encoding; numbers do not depend on the locale anywhere.
    std::setlocale(LC_ALL, "");
    return Program().Run(argc, argv);
}
