#pragma once

#include <functional>
#include <string>
#include <vector>

#include "tree/construct/NodePointStore.h"

namespace vpc {

/// The points of one construction node: those written out, and behind them in order the records
/// that are still in memory.
///
/// Points are written out to the node's temporary file, which holds serialised point records and
/// nothing else and is removed with this object; or, where the store has a budget, to pieces of the
/// store's file for all nodes.
class NodePoints {
public:
    using Visitor = std::function<void(char* records, unsigned long long count)>;

    /// \param path the file's name as the system takes it; it is created by the first write
    NodePoints(NodePointStore& store, std::string path);
    ~NodePoints();
    NodePoints(const NodePoints&) = delete;
    NodePoints& operator=(const NodePoints&) = delete;

    const std::string& Path() const { return path_; }
    unsigned long long Count() const { return writtenOut_ + inMemory_; }
    bool HasFile() const { return !file_.empty(); }

    /// Room for one more record at the end, to be filled by the caller at once.
    char* Append() {
        if (roomInTail_ == 0) AddBlock();
        char* slot = cursor_;
        cursor_ += recordSize;
        --roomInTail_;
        ++inMemory_;
        return slot;
    }

    /// Writes the records in memory out and frees their memory. The node's file is created even if
    /// there are none. Throws vpc::IoError when they cannot be written; they then stay in memory,
    /// and what was written out before stays, too.
    void WriteOut();

    /// Calls `visit` with all records in order, in pieces of at most
    /// NodePointStore::scratchRecords; `visit` may change them. Throws vpc::IoError when what was
    /// written out cannot be read whole.
    void Visit(const Visitor& visit);

    /// Deletes what was written out and frees the memory; no points remain.
    void Clear();
    /// Frees the records in memory and keeps those written out.
    void ClearMemory();
    /// Takes all points of `other`, which has none afterwards. The file keeps the name that it has
    /// until it is renamed.
    void TakeOver(NodePoints& other);
    /// Gives the file the name Path(), if there is a file. Throws vpc::IoError when that fails.
    void RenameFile();
    /// The same for a file whose name the caller knows.
    void RenameFileFrom(const std::string& oldPath);

private:
    friend class NodePointStore;

    void AddBlock();
    void AppendToFile();
    void AppendToSpill();
    void RemoveWrittenOut();
    void VisitFile(char* scratch, const Visitor& visit);
    void VisitSpill(char* scratch, const Visitor& visit);
    /// Calls `visit` with the records in memory, gathered in `scratch`.
    void VisitMemory(char* scratch, const Visitor& visit);

    NodePointStore* store_;
    std::string path_;
    /// The name that the file has; empty while there is none.
    std::string file_;
    bool listed_ = false;
    unsigned roomInTail_ = 0;
    unsigned long long writtenOut_ = 0;
    unsigned long long inMemory_ = 0;
    unsigned long long blocks_ = 0;
    std::vector<SpillFile::Piece> pieces_;
    char* cursor_ = nullptr;
    RecordBlock* first_ = nullptr;
    RecordBlock* last_ = nullptr;
    NodePoints* older_ = nullptr;
    NodePoints* newer_ = nullptr;
};

}  // namespace vpc
