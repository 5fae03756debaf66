#pragma once

namespace vpc {

/// Thrown through a preprocessing run when its observer asks it to stop. Not a std::exception, so
/// that nothing on the way takes it for a failure.
struct PrepareCancelled {};

}  // namespace vpc
