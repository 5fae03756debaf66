// Runs a command and prints on one line what it took: the seconds, the most memory that it held in
// KiB, the seconds of the processor for itself and for the system, and the bytes that it wrote to
// files. With --disk a sixth number follows: the most bytes by which the file system of a folder
// became fuller meanwhile. This counts files without a name as well, and what other programs write.
// The command's own output goes to stderr, so that a script can take the line alone.
//
// Usage: vpc_measure [--disk FOLDER] COMMAND [ARGUMENT...]. Ends with the command's exit status.

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>

#include <sys/resource.h>
#include <sys/statvfs.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr timespec betweenSamples{0, 20'000'000};
/// The system counts what a process writes in blocks of this size, whatever the disk's are.
constexpr long long writtenBlock = 512;

[[noreturn]] void fail(const char* what) {
    std::perror(what);
    std::exit(1);
}

double seconds(const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
}

/// How much fuller the file system of a folder gets; watches nothing where the name is null.
class DiskWatch {
public:
    explicit DiskWatch(const char* folder) : folder_(folder) {
        Sample();
        atStart_ = least_;
    }
    void Sample() {
        struct statvfs status {};
        if (folder_ == nullptr) return;
        if (statvfs(folder_, &status) != 0) fail(folder_);
        least_ = std::min(least_, static_cast<long long>(status.f_bfree * status.f_frsize));
    }
    long long MostUsed() const { return atStart_ - least_; }

private:
    const char* folder_;
    long long least_ = std::numeric_limits<long long>::max();
    long long atStart_;
};

/// Runs the command to its end, sampling the disk meanwhile; gives its wait status.
int run(char** command, DiskWatch& disk, rusage& usage) {
    // The signal of the command's end is held back, so that sigtimedwait can wait for it.
    sigset_t ended, before;
    sigemptyset(&ended);
    sigaddset(&ended, SIGCHLD);
    sigprocmask(SIG_BLOCK, &ended, &before);
    const pid_t child = fork();
    if (child == 0) {
        sigprocmask(SIG_SETMASK, &before, nullptr);
        dup2(STDERR_FILENO, STDOUT_FILENO);
        execvp(*command, command);
        std::perror(*command);
        _exit(127);
    }
    int status = 0;
    pid_t done = child;
    while (child > 0 && (done = wait4(child, &status, WNOHANG, &usage)) == 0) {
        sigtimedwait(&ended, nullptr, &betweenSamples);
        disk.Sample();
    }
    if (done < 0) fail("vpc_measure");
    return status;
}

}  // namespace

int main(int argc, char** argv) {
    const bool disk = argc > 2 && std::strcmp(argv[1], "--disk") == 0;
    char** const command = argv + (disk ? 3 : 1);
    if (*command == nullptr) {
        std::fprintf(stderr, "usage: vpc_measure [--disk FOLDER] COMMAND [ARGUMENT...]\n");
        return 2;
    }
    DiskWatch watch(disk ? argv[2] : nullptr);
    rusage usage{};
    const auto start = std::chrono::steady_clock::now();
    const int status = run(command, watch, usage);
    const std::chrono::duration<double> took = std::chrono::steady_clock::now() - start;
    std::printf("%.6f %ld %.2f %.2f %lld", took.count(), usage.ru_maxrss, seconds(usage.ru_utime),
                seconds(usage.ru_stime), usage.ru_oublock * writtenBlock);
    if (disk) std::printf(" %lld", watch.MostUsed());
    std::printf("\n");
    return WIFEXITED(status) ? WEXITSTATUS(status) : 1;
}
