#include "vpc/common/Interrupt.h"

#include <array>
#include <csignal>

#include "vpc/common/Command.h"

namespace vpc {

namespace {

volatile std::sig_atomic_t requested = 0;

extern "C" void onSignal(int signal) {
    requested = signal;
}

void handle(int signal, void (*handler)(int)) {
    struct sigaction action = {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;  // reads and writes under way are to go on until the next check
    sigemptyset(&action.sa_mask);
    sigaction(signal, &action, nullptr);
}

}  // namespace

void Interrupt::Catch() {
    for (const int signal : std::array{SIGINT, SIGTERM, SIGHUP}) handle(signal, onSignal);
    for (const int signal : std::array{SIGPIPE, SIGXFSZ}) handle(signal, SIG_IGN);
}

bool Interrupt::Requested() {
    return requested != 0;
}

int Interrupt::Signal() {
    return Requested() ? static_cast<int>(requested) : SIGINT;
}

void Interrupt::Check() {
    if (Requested()) throw CommandInterrupted("interrupted");
}

}  // namespace vpc
