#pragma once

#include <functional>
#include <string>

#include "tree/construct/NodePointStore.h"

namespace vpc {

/// The points of one construction node: the node's temporary file, and behind it in order the
/// records that are still in memory. The file holds serialised point records and nothing else.
///
/// Removes its file when it goes.
class NodePoints {
public:
    /// \param path the file's name as the system takes it; it is created by the first write
    NodePoints(NodePointStore& store, std::string path);
    ~NodePoints();
    NodePoints(const NodePoints&) = delete;
    NodePoints& operator=(const NodePoints&) = delete;

    const std::string& Path() const { return path_; }
    unsigned long long Count() const { return inFile_ + inMemory_; }
    unsigned long long InMemory() const { return inMemory_; }
    bool HasFile() const { return hasFile_; }

    /// Room for one more record at the end, to be filled by the caller at once.
    char* Append() {
        if (roomInTail_ == 0) AddBlock();
        char* slot = cursor_;
        cursor_ += recordSize;
        --roomInTail_;
        ++inMemory_;
        return slot;
    }

    /// Appends the records in memory to the file (which is created even if there are none) and
    /// frees their memory. False when the file cannot be written: then they stay in memory and
    /// the file is as it was.
    bool WriteOut();

    /// Calls `visit` with all records in order, in pieces of at most
    /// NodePointStore::scratchRecords; it may change what it is given. False when the file cannot
    /// be read whole.
    bool Visit(const std::function<void(char* records, unsigned long long count)>& visit);

    /// Deletes the file and frees the memory; no points remain.
    void Clear();
    /// Frees the records in memory and keeps the file.
    void ClearMemory();
    /// Takes all points of `other`, which has none afterwards. The file keeps the name that it
    /// has: the caller renames it to Path().
    void TakeOver(NodePoints& other);
    /// Renames the file from `oldPath` to Path(), if there is a file.
    bool RenameFileFrom(const std::string& oldPath);

private:
    friend class NodePointStore;

    void AddBlock();
    void RemoveFile();
    bool VisitFile(char* scratch, const std::function<void(char*, unsigned long long)>& visit);
    /// Calls `visit` with the records in memory, gathered in `scratch`.
    void VisitMemory(char* scratch, const std::function<void(char*, unsigned long long)>& visit);

    NodePointStore* store_;
    std::string path_;
    bool hasFile_ = false;
    bool listed_ = false;
    unsigned roomInTail_ = 0;
    unsigned long long inFile_ = 0;
    unsigned long long inMemory_ = 0;
    unsigned long long blocks_ = 0;
    char* cursor_ = nullptr;
    RecordBlock* first_ = nullptr;
    RecordBlock* last_ = nullptr;
    NodePoints* older_ = nullptr;
    NodePoints* newer_ = nullptr;
};

}  // namespace vpc
