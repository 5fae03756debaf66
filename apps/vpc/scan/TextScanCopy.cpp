#include "vpc/scan/TextScanCopy.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>

#include "core/util/FileTools.h"
#include "core/util/IoError.h"

namespace vpc {

namespace {

constexpr std::size_t pieceBytes = std::size_t{1} << 20;
/// Enough for every count of 64 bits.
constexpr std::size_t countWidth = 20;

}  // namespace

TextScanCopy::TextScanCopy(const std::string& file)
    : name_(file), file_(std::fopen(file.c_str(), "wbe")) {
    if (file_ == nullptr) Fail();
    text_.reserve(pieceBytes + pieceBytes / 8);
}

void TextScanCopy::BeginBlock(std::size_t countLines, std::string_view rest) {
    countLines_ = countLines;
    countsPosition_ = written_ + text_.size();
    for (std::size_t i = 0; i < countLines; ++i) text_.append(countWidth, ' ') += '\n';
    text_ += rest;
}

void TextScanCopy::EndBlock(const std::array<unsigned long long, 2>& counts) {
    std::string lines;
    for (std::size_t i = 0; i < countLines_; ++i) {
        const std::string digits = std::to_string(counts[i]);
        lines.append(countWidth - digits.size(), ' ').append(digits) += '\n';
    }
    if (countsPosition_ >= written_) {
        text_.replace(countsPosition_ - written_, lines.size(), lines);
        return;
    }
    Flush();
    // Nothing of the text is left in memory, so the file alone has to be changed.
    if (fseeko(file_.get(), static_cast<off_t>(countsPosition_), SEEK_SET) != 0 ||
        std::fwrite(lines.data(), 1, lines.size(), file_.get()) != lines.size() ||
        fseeko(file_.get(), 0, SEEK_END) != 0)
        Fail();
}

void TextScanCopy::Flow() {
    if (text_.size() >= pieceBytes) Flush();
}

void TextScanCopy::Flush() {
    if (std::fwrite(text_.data(), 1, text_.size(), file_.get()) != text_.size()) Fail();
    written_ += text_.size();
    text_.clear();
}

void TextScanCopy::Close() {
    Flush();
    if (std::fclose(file_.release()) != 0) Fail();
}

void TextScanCopy::Fail() const {
    throw IoError(FileTools::FromNativePath(name_), "cannot be written", errno);
}

}  // namespace vpc
