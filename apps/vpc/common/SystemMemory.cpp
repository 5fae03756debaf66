#include "vpc/common/SystemMemory.h"

#include <unistd.h>

#include <limits>

namespace vpc {

unsigned long long systemMemory() {
    const long pages = sysconf(_SC_PHYS_PAGES);
    const long pageSize = sysconf(_SC_PAGE_SIZE);
    if (pages <= 0 || pageSize <= 0) return std::numeric_limits<unsigned long long>::max();
    return static_cast<unsigned long long>(pages) * static_cast<unsigned long long>(pageSize);
}

}  // namespace vpc
