#include "viewer/window/XvfbServer.h"

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <stdexcept>

namespace vpc::test {

XvfbServer::XvfbServer() {
    int ends[2];
    if (pipe(ends) != 0) throw std::runtime_error("no pipe");
    const std::string numberTo = std::to_string(ends[1]);
    server_ = fork();
    if (server_ == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        close(ends[0]);
        // It tells there of keys that its keyboard map does not know.
        dup2(open("/dev/null", O_WRONLY), STDERR_FILENO);
        execlp("Xvfb", "Xvfb", "-displayfd", numberTo.c_str(), "-screen", "0", "1600x1000x24",
               "-nolisten", "tcp", "-noreset", nullptr);
        _exit(127);
    }
    close(ends[1]);
    for (char digit = 0; read(ends[0], &digit, 1) == 1 && digit != '\n';) display_ += digit;
    close(ends[0]);
    if (display_.size() == 1) {
        waitpid(server_, nullptr, 0);
        throw std::runtime_error("Xvfb does not start; script/bootstrap installs it");
    }
}

XvfbServer::~XvfbServer() {
    kill(server_, SIGTERM);
    waitpid(server_, nullptr, 0);
}

}  // namespace vpc::test
