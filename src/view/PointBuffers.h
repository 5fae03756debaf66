#pragma once

#include <cstdlib>
#include <memory>

#include "platform/OdCmEntityColor.h"
#include "platform/OdGePoint3d.h"

namespace vpc {

/// The arrays that the host draws from. Each has one element for every slot; all of them together
/// take bytesPerSlot for it.
///
/// Coordinates start as zero and colours as black, with the method by colour; sizes and intensities
/// are undefined until a point is written. Allocation touches only the colours. The system hands
/// out the other pages when points come, so that large buffers cost a small cloud nothing.
class PointBuffers {
public:
    static constexpr unsigned long long bytesPerSlot =
        sizeof(OdGePoint3d) + sizeof(OdCmEntityColor) + 2 * sizeof(double);

    /// Throws std::bad_alloc.
    explicit PointBuffers(unsigned long long slotCount);

    unsigned long long slots() const { return slots_; }
    OdGePoint3d* coordinates() const { return coordinates_.get(); }
    OdCmEntityColor* colours() const { return colours_.get(); }
    double* sizes() const { return sizes_.get(); }
    double* intensities() const { return intensities_.get(); }

private:
    struct Free {
        void operator()(void* block) const { std::free(block); }
    };
    struct HostFree {
        void operator()(void* block) const;
    };

    unsigned long long slots_ = 0;
    std::unique_ptr<OdGePoint3d[], Free> coordinates_;
    /// From the host's allocator.
    std::unique_ptr<OdCmEntityColor[], HostFree> colours_;
    std::unique_ptr<double[]> sizes_;
    std::unique_ptr<double[]> intensities_;
};

}  // namespace vpc
