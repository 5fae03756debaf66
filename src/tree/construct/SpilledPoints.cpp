#include "tree/construct/SpilledPoints.h"

#include <algorithm>

#include "tree/construct/NodePointStore.h"

namespace vpc {

SpilledPoints::~SpilledPoints() {
    for (const Piece& piece : pieces_) store_.Spill().Free(piece.position, piece.size);
}

void SpilledPoints::Append(const RecordBlock* first) {
    std::vector<iovec> parts;
    unsigned long long size = 0;
    for (const RecordBlock* block = first; block != nullptr; block = block->next) {
        // All but the last are written to their end, so that each begins where it can be found.
        const unsigned bytes = block->next != nullptr ? RecordBlock::size : block->UsedBytes();
        parts.push_back({const_cast<RecordBlock*>(block), bytes});
        size += bytes;
    }
    if (size == 0) return;
    const unsigned long long position = store_.Spill().Reserve(size, zone_);
    store_.Spill().Write(position, parts);
    pieces_.push_back({position, size});
}

void SpilledPoints::Visit(const Visitor& visit, bool giveBack) {
    const ScratchLoan scratch(store_);
    for (Piece& piece : pieces_) {
        VisitPiece(piece, scratch.Blocks(), visit);
        if (!giveBack) continue;
        store_.Spill().Free(piece.position, piece.size);
        piece.size = 0;
    }
}

void SpilledPoints::VisitPiece(const Piece& piece, RecordBlock* scratch,
                               const Visitor& visit) const {
    constexpr unsigned long long scratchBytes = ScratchLoan::blocks * RecordBlock::size;
    for (unsigned long long done = 0; done < piece.size; done += scratchBytes) {
        const auto bytes = std::min(piece.size - done, scratchBytes);
        store_.Spill().Read(piece.position + done, reinterpret_cast<char*>(scratch), bytes);
        const auto blocks = (bytes + RecordBlock::size - 1) / RecordBlock::size;
        for (unsigned long long i = 0; i < blocks; ++i) {
            RequireBlock(scratch[i]);
            visit(scratch[i]);
        }
    }
}

void SpilledPoints::RequireBlock(const RecordBlock& block) const {
    if (block.format >= store_.Packer().Formats()) store_.Spill().FailDamaged();
    const unsigned size = store_.Packer().Format(block.format).RecordSize();
    if ((block.stride != size && block.stride != size + sizeof(RecordBlock::ArrivalOffset)) ||
        block.count > RecordBlock::Capacity(block.stride))
        store_.Spill().FailDamaged();
}

}  // namespace vpc
