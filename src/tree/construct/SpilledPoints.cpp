#include "tree/construct/SpilledPoints.h"

#include <iterator>

#include "tree/construct/CompactBlock.h"
#include "tree/construct/NodePointStore.h"

namespace vpc {

SpilledPoints::~SpilledPoints() {
    for (const Piece& piece : pieces_) store_.Spill().Free(piece.position, piece.size, zone_);
}

void SpilledPoints::Append(const RecordBlock* first) {
    const ScratchLoan scratch(store_);
    std::vector<Piece> added;
    char* end = scratch->bytes;
    const auto writePiece = [&] {
        const auto size = static_cast<unsigned long long>(end - scratch->bytes);
        if (size == 0) return;
        const unsigned long long position = store_.Spill().Reserve(size, zone_);
        store_.Spill().Write(position, scratch->bytes, size);
        added.push_back({position, size});
        end = scratch->bytes;
    };
    for (const RecordBlock* block = first; block != nullptr; block = block->next) {
        if (std::end(scratch->bytes) - end < CompactBlock::mostBytes) writePiece();
        if (block->count != 0) end = CompactBlock::Write(*block, store_.SpillsCompact(), end);
    }
    writePiece();
    pieces_.insert(pieces_.end(), added.begin(), added.end());
}

void SpilledPoints::Visit(const Visitor& visit, bool giveBack) {
    const ScratchLoan scratch(store_);
    for (Piece& piece : pieces_) {
        VisitPiece(piece, *scratch, visit);
        if (!giveBack) continue;
        store_.Spill().Free(piece.position, piece.size, zone_);
        piece.size = 0;
    }
}

void SpilledPoints::VisitPiece(const Piece& piece, SpillScratch& scratch,
                               const Visitor& visit) const {
    store_.Spill().Read(piece.position, scratch.bytes, piece.size);
    const char* const end = scratch.bytes + piece.size;
    for (const char* at = scratch.bytes; at != end;) {
        at = CompactBlock::Read(at, end, scratch.block);
        if (at == nullptr || !IsKnown(scratch.block)) store_.Spill().FailDamaged();
        visit(scratch.block);
    }
}

bool SpilledPoints::IsKnown(const RecordBlock& block) const {
    if (block.format >= store_.Packer().Formats()) return false;
    const unsigned size = store_.Packer().Format(block.format).RecordSize();
    return block.stride == size || block.stride == size + sizeof(RecordBlock::ArrivalOffset);
}

}  // namespace vpc
