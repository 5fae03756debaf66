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
    /// Throws CommandInterrupted if the flag is set.
    static void Check();
};

}  // namespace vpc
