#include "io/TextFileWriter.h"

#include <charconv>

#include "core/geometry/NumberText.h"
#include "core/util/FileTools.h"

namespace vpc {
namespace {

constexpr std::size_t pieceSize = std::size_t{1} << 20;
constexpr int significantDigits = 9;
constexpr std::size_t longestNumber = 64;

}  // namespace

TextFileWriter::TextFileWriter(const wxString& path)
    : file_(FileTools::ToNativePath(path), std::ios::trunc) {
}

TextFileWriter::~TextFileWriter() {
    file_.write(text_.data(), static_cast<std::streamsize>(text_.size()));
}

TextFileWriter& TextFileWriter::operator<<(std::string_view text) {
    text_ += text;
    if (text_.size() >= pieceSize) {
        file_.write(text_.data(), static_cast<std::streamsize>(text_.size()));
        text_.clear();
    }
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

}  // namespace vpc
