#include "io/TextFileWriter.h"

#include <cerrno>
#include <charconv>

#include <wx/translation.h>

#include "core/geometry/NumberText.h"
#include "core/util/FileTools.h"

namespace vpc {
namespace {

constexpr std::size_t pieceSize = std::size_t{1} << 20;
constexpr int significantDigits = 9;
constexpr std::size_t longestNumber = 64;

}  // namespace

TextFileWriter::TextFileWriter(const wxString& path)
    : path_(path), file_(std::fopen(FileTools::ToNativePath(path).c_str(), "we")) {
    if (file_ == nullptr) Fail();
}

TextFileWriter& TextFileWriter::operator<<(std::string_view text) {
    text_ += text;
    if (text_.size() >= pieceSize) Flush();
    return *this;
}

TextFileWriter& TextFileWriter::operator<<(unsigned long long number) {
    char digits[longestNumber];
    const auto result = std::to_chars(digits, digits + sizeof digits, number);
    return *this << std::string_view(digits, static_cast<std::size_t>(result.ptr - digits));
}

TextFileWriter& TextFileWriter::operator<<(double number) {
    return *this << generalText(number, significantDigits);
}

void TextFileWriter::Close() {
    Flush();
    if (std::fclose(file_.release()) != 0) Fail();
}

void TextFileWriter::Flush() {
    if (std::fwrite(text_.data(), 1, text_.size(), file_.get()) != text_.size()) Fail();
    text_.clear();
}

void TextFileWriter::Fail() const {
    const int reason = errno;
    throw IoError(path_, wxGetTranslation("cannot be written"), reason);
}

}  // namespace vpc
