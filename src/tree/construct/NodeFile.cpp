#include "tree/construct/NodeFile.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <system_error>
#include <utility>

#include <wx/translation.h>

#include "core/util/FileBufferStream.h"
#include "core/util/FileTools.h"
#include "core/util/IoError.h"

namespace vpc {

NodeFile::NodeFile(const NodePointStore& store, std::string path)
    : store_(store), path_(std::move(path)) {
}

NodeFile::~NodeFile() {
    if (exists_) std::remove(path_.c_str());
}

void NodeFile::Append(const RecordBlock* first) {
    FileBufferStream stream;
    unsigned long long added = 0;
    if (stream.StreamOpen(FileTools::FromNativePath(path_), FileModeWrite, true)) {
        exists_ = true;
        std::array<char, sizeof RecordBlock::records / PointFormat::smallest * recordSize> records;
        for (const RecordBlock* block = first; block != nullptr; block = block->next) {
            store_.Packer()
                .Format(block->format)
                .Unpack(block->records, block->stride, block->count, records.data());
            stream.WriteCharArray2File(records.data(), block->count * recordSize);
            added += block->count;
        }
        stream.StreamClose();
    }
    if (!stream.IsStreamGood()) {
        // Some of the records may be in the file: cut it back to what it held before.
        std::error_code ignored;
        if (exists_) std::filesystem::resize_file(path_, count_ * recordSize, ignored);
        throw IoError(FileTools::FromNativePath(path_), wxGetTranslation("cannot be written"),
                      stream.SystemError());
    }
    count_ += added;
}

void NodeFile::Visit(const Visitor& visit, bool) {
    if (count_ == 0) return;
    const wxString file = FileTools::FromNativePath(path_);
    FileBufferStream stream;
    stream.StreamOpen(file, FileModeRead);  // where that fails, so does the first read
    const auto block = std::make_unique_for_overwrite<RecordBlock>();
    block->format = PointPacker::serialised;
    block->stride = recordSize;
    for (unsigned long long done = 0; done < count_; done += block->count) {
        block->count = static_cast<std::uint16_t>(
            std::min<unsigned long long>(count_ - done, RecordBlock::Capacity(block->stride)));
        stream.ReadCharArray2File(block->records, block->count * recordSize);
        if (!stream.IsStreamGood())
            throw IoError(file, wxGetTranslation("cannot be read"), stream.SystemError());
        visit(*block);
    }
}

void NodeFile::Rename(const std::string& oldPath, const std::string& newPath) {
    if (!exists_) return;
    if (std::rename(oldPath.c_str(), newPath.c_str()) != 0)
        throw IoError(FileTools::FromNativePath(oldPath), wxGetTranslation("cannot be renamed"),
                      errno);
    path_ = newPath;
}

}  // namespace vpc
