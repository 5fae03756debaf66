#pragma once

#include <cstdint>

// The host SDK's names for the integers of fixed size.
using OdInt32 = std::int32_t;
using OdInt64 = std::int64_t;
using OdUInt8 = std::uint8_t;
using OdUInt32 = std::uint32_t;

/// Marks what is the same object in the host and in every plug-in, whatever visibility the plug-in
/// is compiled with.
#define OD_EXPORT __attribute__((visibility("default")))
