#include "platform/OdAlloc.h"

#include <cstdlib>

void* odrxAlloc(std::size_t bytes) {
    return std::malloc(bytes);
}

void odrxFree(void* memory) {
    std::free(memory);
}
