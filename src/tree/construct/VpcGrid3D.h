#pragma once

#include <cstdio>
#include <exception>
#include <limits>
#include <new>
#include <vector>

#include "core/geometry/VpcBoundingBoxAxisAligned.h"

/// A regular grid of cells over a box, each holding a `Cell`; x runs fastest, then y, then z.
template <class Cell>
class VpcGrid3D {
public:
    /// A grid of nx * ny * nz cells. Throws std::bad_alloc, after a line on standard error, when
    /// there is not enough memory for them.
    VpcGrid3D(const VpcBoundingBoxAxisAligned& box, unsigned long long nx, unsigned long long ny,
              unsigned long long nz)
        : counts_{nx, ny, nz},
          minimum_{box.minPoint.x, box.minPoint.y, box.minPoint.z},
          cellSize_{box.sideX / static_cast<double>(nx), box.sideY / static_cast<double>(ny),
                    box.sideZ / static_cast<double>(nz)} {
        AllocateCells();
    }

    /// The number of cells along an axis (0 x, 1 y, 2 z).
    unsigned long long Count(unsigned axis) const { return counts_[axis]; }
    double Minimum(unsigned axis) const { return minimum_[axis]; }
    double CellSize(unsigned axis) const { return cellSize_[axis]; }

    Cell& At(unsigned long long ix, unsigned long long iy, unsigned long long iz) {
        return cells_[ix + counts_[0] * (iy + counts_[1] * iz)];
    }
    /// All cells, in their order in memory.
    const std::vector<Cell>& Cells() const { return cells_; }

private:
    void AllocateCells() {
        try {
            cells_.resize(CellCount());
        } catch (const std::exception& e) {
            // Not only std::bad_alloc: for a size beyond all memory std::vector throws
            // std::length_error.
            std::fprintf(stderr,
                         "## EXCEPTION ERROR while creating VpcGrid3D of %llux%llux%llu of size "
                         "%zu : bad_alloc caught : %s\n",
                         counts_[0], counts_[1], counts_[2], sizeof(Cell), e.what());
            throw std::bad_alloc();
        }
    }

    std::size_t CellCount() const {
        std::size_t count = 1;
        for (const unsigned long long n : counts_)
            if (__builtin_mul_overflow(count, n, &count))
                return std::numeric_limits<std::size_t>::max();
        return count;
    }

    unsigned long long counts_[3];
    double minimum_[3];
    double cellSize_[3];
    std::vector<Cell> cells_;
};
