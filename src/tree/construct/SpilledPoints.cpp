#include "tree/construct/SpilledPoints.h"

#include <iterator>

#include "core/util/IoError.h"
#include "tree/construct/CompactBlock.h"
#include "tree/construct/NodePointStore.h"

namespace vpc {

SpilledPoints::~SpilledPoints() {
    ForgetAllBut(0);
}

void SpilledPoints::ForgetAllBut(std::size_t first) {
    for (; pieces_.size() > first; pieces_.pop_back())
        store_.Spill().Free(pieces_.back().position, pieces_.back().size, zone_);
}

void SpilledPoints::Append(const RecordBlock* first) {
    const std::size_t before = pieces_.size();
    try {
        AppendPieces(first);
    } catch (const IoError&) {
        ForgetAllBut(before);
        throw;
    }
}

void SpilledPoints::AppendPieces(const RecordBlock* first) {
    const ScratchLoan scratch(store_);
    char* end = scratch->bytes;
    const auto writePiece = [&] {
        const auto size = static_cast<unsigned long long>(end - scratch->bytes);
        if (size == 0) return;
        pieces_.push_back({store_.Spill().Reserve(size, zone_), size});
        store_.Spill().Write(pieces_.back().position, scratch->bytes, size);
        end = scratch->bytes;
    };
    for (const RecordBlock* block = first; block != nullptr; block = block->next) {
        if (std::end(scratch->bytes) - end < CompactBlock::mostBytes) writePiece();
        if (block->count != 0) end = CompactBlock::Write(*block, store_.SpillsCompact(), end);
    }
    writePiece();
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
