#pragma once

#include <cstddef>
#include <vector>

#include "tree/construct/RestingPoints.h"

namespace vpc {

class NodePointStore;
struct SpillScratch;

/// Points of one node in pieces of the store's file for all nodes.
class SpilledPoints final : public RestingPoints {
public:
    SpilledPoints(NodePointStore& store, unsigned zone) : store_(store), zone_(zone) {}
    ~SpilledPoints() override;

    void Append(const RecordBlock* first) override;
    void Visit(const Visitor& visit, bool giveBack) override;
    void Rename(const std::string&, const std::string&) override {}

private:
    struct Piece {
        unsigned long long position;
        unsigned long long size;
    };
    void AppendPieces(const RecordBlock* first);
    /// Gives all pieces but the first ones back.
    void ForgetAllBut(std::size_t first);
    void VisitPiece(const Piece& piece, SpillScratch& scratch, const Visitor& visit) const;
    /// Whether the block is of a format that there is.
    bool IsKnown(const RecordBlock& block) const;

    NodePointStore& store_;
    unsigned zone_;
    std::vector<Piece> pieces_;
};

}  // namespace vpc
