#include "view/PointBuffers.h"

#include <cstdint>
#include <memory>
#include <new>
#include <type_traits>

#include "platform/OdAlloc.h"

namespace vpc {
namespace {

/// Throws where so many coordinates would have more bytes than an object may have.
std::size_t checkedCount(unsigned long long slotCount) {
    if (slotCount > PTRDIFF_MAX / sizeof(OdGePoint3d)) throw std::bad_array_new_length();
    return static_cast<std::size_t>(slotCount);
}

OdGePoint3d* zeroedCoordinates(std::size_t count) {
    // Zero bytes are points at the origin, and the system gives zeros without writing them.
    static_assert(std::is_trivially_copyable_v<OdGePoint3d>);
    void* const block = std::calloc(count, sizeof(OdGePoint3d));
    if (block == nullptr) throw std::bad_alloc();
    return static_cast<OdGePoint3d*>(block);
}

OdCmEntityColor* blackByColour(std::size_t count) {
    static_assert(std::is_trivially_destructible_v<OdCmEntityColor>);
    void* const block = odrxAlloc(count * sizeof(OdCmEntityColor));
    if (block == nullptr) throw std::bad_alloc();
    OdCmEntityColor black(OdCmEntityColor::kByColor);
    black.setRGB(0, 0, 0);
    auto* const colours = static_cast<OdCmEntityColor*>(block);
    std::uninitialized_fill_n(colours, count, black);
    return colours;
}

}  // namespace

PointBuffers::PointBuffers(unsigned long long slotCount)
    : slots_(checkedCount(slotCount)),
      coordinates_(zeroedCoordinates(slots_)),
      colours_(blackByColour(slots_)),
      sizes_(std::make_unique_for_overwrite<double[]>(slots_)),
      intensities_(std::make_unique_for_overwrite<double[]>(slots_)) {
}

void PointBuffers::HostFree::operator()(void* block) const {
    odrxFree(block);
}

}  // namespace vpc
