#pragma once

namespace vpc {

/// What the program's exit status tells.
enum ExitStatus : int { exitDone = 0, exitFailed = 1, exitWrongUsage = 2, exitInterrupted = 130 };

}  // namespace vpc
