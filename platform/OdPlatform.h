#pragma once

#include <cstdint>

// The host SDK's names for the integers of fixed size.
using OdInt32 = std::int32_t;
using OdInt64 = std::int64_t;
using OdUInt8 = std::uint8_t;
using OdUInt32 = std::uint32_t;

/// Marks what must be one and the same object in the host and in every plug-in, even where a
/// plug-in is compiled with hidden visibility.
#define OD_EXPORT __attribute__((visibility("default")))
