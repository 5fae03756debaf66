#pragma once

#include "tree/construct/NodePointStore.h"
#include "tree/construct/RestingPoints.h"

namespace vpc {

/// Points of one node in a named file of its own, which holds records of the tree file and nothing
/// else.
class NodeFile final : public RestingPoints {
public:
    /// \param path the file's name as the system takes it; it is created by the first Append
    NodeFile(const NodePointStore& store, std::string path);
    ~NodeFile() override;

    void Append(const RecordBlock* first) override;
    void Visit(const Visitor& visit, bool giveBack) override;
    void Rename(const std::string& oldPath, const std::string& newPath) override;
    std::string File() const override { return exists_ ? path_ : std::string(); }

private:
    const NodePointStore& store_;
    std::string path_;
    bool exists_ = false;
    unsigned long long count_ = 0;
};

}  // namespace vpc
