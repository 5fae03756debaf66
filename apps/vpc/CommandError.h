#pragma once

#include <stdexcept>

namespace vpc {

/// Ends a command: a sentence for the user, in the system's encoding, that names the file and
/// what to do; the program prints it and exits with status 1.
class CommandError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Ends a command because its options do not go together: exit status 2.
class CommandUsageError : public CommandError {
public:
    using CommandError::CommandError;
};

/// Ends a command because the user asked for it: exit status 130.
class CommandInterrupted : public CommandError {
public:
    using CommandError::CommandError;
};

}  // namespace vpc
