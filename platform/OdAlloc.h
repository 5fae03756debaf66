#pragma once

#include <cstddef>

/// Memory from the host's allocator; null when there is none left.
void* odrxAlloc(std::size_t bytes);
/// Gives back what odrxAlloc returned; null is ignored.
void odrxFree(void* memory);
