#pragma once

namespace vpc {

/// Turns the signals that ask a program to end into a flag, so that a command can clean up behind
/// itself first. However often they come, they never end the program on the spot.
class Interrupt {
public:
    /// From now on SIGINT, SIGTERM and SIGHUP set the flag; writing to a closed pipe or past a
    /// file-size limit fails instead of ending the program.
    static void Catch();
    static bool Requested();
    /// The signal that set the flag last; SIGINT where none has.
    static int Signal();
    /// Throws CommandInterrupted if the flag is set.
    static void Check();
    /// The same for a loop over points: looks at the flag in one of many steps.
    static void CheckSometimes(unsigned long long step) {
        if (step % 65536 == 0) Check();
    }
};

}  // namespace vpc
