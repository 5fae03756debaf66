#pragma once

namespace vpc {

/// Bytes of memory that the machine has. Where the system does not say it is the largest number, so
/// that anything may be tried.
unsigned long long systemMemory();

}  // namespace vpc
