#pragma once

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <iomanip>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "support/PrepareRun.h"

namespace vpc::test {

/// The result of a run of the program.
struct ProgramResult {
    /// The exit status; minus the signal's number where one ended the program.
    int status = -1;
    std::string out;
    std::string err;
};

/// One run of a program in a folder; it starts at once.
class ProgramRun {
public:
    /// \param commandLine  words between blanks; within double quotes they may hold blanks
    /// \param program      `vpc`, or another one
    ProgramRun(const std::string& commandLine, const std::filesystem::path& folder,
               rlim_t largestFile = RLIM_INFINITY, const std::string& program = VPC_PROGRAM) {
        std::vector<std::string> words = {program};
        std::istringstream line(commandLine);
        for (std::string word; line >> std::quoted(word);) words.push_back(word);
        std::vector<char*> argv;
        for (std::string& word : words) argv.push_back(word.data());
        argv.push_back(nullptr);
        child_ = fork();
        if (child_ != 0) return;
        // Until exec only calls that are allowed after fork may follow.
        redirect(output_.file("out"), STDOUT_FILENO);
        redirect(output_.file("err"), STDERR_FILENO);
        const rlimit limit{largestFile, largestFile};
        if (chdir(folder.c_str()) != 0 || setrlimit(RLIMIT_FSIZE, &limit) != 0) _exit(126);
        execv(argv[0], argv.data());
        _exit(127);
    }
    ProgramRun(const ProgramRun&) = delete;
    ProgramRun& operator=(const ProgramRun&) = delete;
    ~ProgramRun() {
        if (child_ > 0) wait();
    }

    pid_t id() const { return child_; }
    void send(int signal) const { kill(child_, signal); }
    bool hasEnded() const {
        siginfo_t about{};
        return waitid(P_PID, static_cast<id_t>(child_), &about, WEXITED | WNOHANG | WNOWAIT) == 0 &&
               about.si_pid == child_;
    }
    /// Waits until `condition` holds, up to half a minute; false where it never does.
    template <class Condition>
    static bool waitUntil(const Condition& condition) {
        for (int i = 0; i < 30000; ++i) {
            if (condition()) return true;
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        return false;
    }
    ProgramResult wait() {
        int status = 0;
        waitpid(child_, &status, 0);
        child_ = -1;
        const int result = WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
        return {result, readBytes(output_.file("out")), readBytes(output_.file("err"))};
    }

private:
    static void redirect(const std::string& file, int descriptor) {
        dup2(open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), descriptor);
    }

    TempFolder output_;
    pid_t child_ = -1;
};

/// A folder of its own for one test, and the program to run in it.
class ProgramTest : public testing::Test {
protected:
    ProgramResult run(const std::string& commandLine, rlim_t largestFile = RLIM_INFINITY) const {
        return ProgramRun(commandLine, folder.path(), largestFile).wait();
    }
    void expectDone(const std::string& commandLine) const {
        const ProgramResult result = run(commandLine);
        EXPECT_EQ(result.status, 0) << commandLine << "\n" << result.err;
    }
    /// Expects that a run fails and that what it prints contains `text`.
    void expectFailure(const std::string& commandLine, int status, const std::string& text,
                       rlim_t largestFile = RLIM_INFINITY) const {
        const ProgramResult result = run(commandLine, largestFile);
        EXPECT_EQ(result.status, status) << commandLine;
        EXPECT_NE(result.err, "") << commandLine;
        EXPECT_THAT(result.err, testing::HasSubstr(text)) << commandLine;
    }
    void write(const std::string& name, const std::string& bytes) const {
        writeBytes(folder.file(name), bytes);
    }
    std::string read(const std::string& name) const { return readBytes(folder.file(name)); }

    const PrepareFolder folder{"Stra\u00dfe \u6771"};
};

}  // namespace vpc::test
