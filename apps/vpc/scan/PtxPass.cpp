#include "vpc/scan/PtxPass.h"

#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>

#include "vpc/scan/ScanFault.h"
#include "vpc/scan/TextScanCopy.h"

namespace vpc {

namespace {

using Kind = ScanFault::Kind;

struct HeaderLine {
    std::size_t values;
    const char* meaning;
};
constexpr std::array<HeaderLine, 10> header = {{{1, "the number of columns"},
                                                {1, "the number of rows"},
                                                {3, "the scanner's position"},
                                                {3, "the scanner's X axis"},
                                                {3, "the scanner's Y axis"},
                                                {3, "the scanner's Z axis"},
                                                {4, "the matrix's first row"},
                                                {4, "the matrix's second row"},
                                                {4, "the matrix's third row"},
                                                {4, "the matrix's last row"}}};
/// The first lines of the header, which hold the grid's size.
constexpr std::size_t sizeLines = 2;
constexpr std::size_t withoutColour = 4;
constexpr std::size_t withColour = 7;

}  // namespace

void PtxPass::TakeValues() {
    if (headerLines_ == header.size() && values_.Count() == 1 && values_[0].isDigits) EndScan();
    if (headerLines_ < header.size()) return TakeHeader();
    const bool isCell = values_.Count() == withoutColour || values_.Count() == withColour;
    if (inLine_ == 0 && isCell) inLine_ = values_.Count();
    if (values_.Count() != inLine_)
        return RefuseCount(inLine_ == 0 ? "a point has 4 or 7"
                                        : "the lines before have " + std::to_string(inLine_));
    if (values_.IsUnusual()) NoteUnusual();
    if (!ColoursAreWhole()) return RefuseLine("where a colour is no whole number");
    if (copy_ != nullptr) WriteCell();
    ++held_;
    ++account_.points;
}

void PtxPass::TakeHeader() {
    const HeaderLine& expected = header[headerLines_];
    if (values_.Count() != expected.values || (headerLines_ < sizeLines && !TakeSize()))
        throw ScanFault(Kind::Unusable,
                        "holds " + ShownLine() + ", where " + expected.meaning + " is expected",
                        "give a scan whose header has all of its ten lines");
    if (headerLines_ == 0) claimLine_ = lines_.Number();
    if (values_.IsUnusual()) NoteUnusual();
    if (headerLines_ >= sizeLines) {
        for (std::size_t i = 0; i < values_.Count(); ++i) {
            values_.AppendPlain(values_[i], pose_);
            pose_ += i + 1 == values_.Count() ? '\n' : ' ';
        }
    }
    ++headerLines_;
    // The library's reader stops at a grid without cells.
    if (headerLines_ == header.size() && size_[0] * size_[1] == 0) NoteUnusual();
}

/// Takes the number of columns or rows; false where it cannot be one.
bool PtxPass::TakeSize() {
    constexpr unsigned long long most = std::numeric_limits<std::uint32_t>::max();
    const std::string_view digits = values_[0].Text();
    unsigned long long& size = size_[headerLines_];
    const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), size);
    return values_[0].isDigits && read.ec == std::errc() && size <= most;
}

void PtxPass::EndScan() {
    CompareCounts(size_[0] * size_[1], held_, claimLine_);
    const bool isWhole = size_[0] * size_[1] == held_;
    if (copy_ != nullptr && held_ != 0)
        copy_->EndBlock(isWhole ? size_ : std::array<unsigned long long, 2>{held_, 1});
    held_ = 0;
    headerLines_ = 0;
    inLine_ = 0;
    pose_.clear();
}

void PtxPass::End() {
    if (headerLines_ == header.size()) return EndScan();
    if (headerLines_ == 0) return;
    if (!rules_.allowIncomplete)
        throw ScanFault(Kind::Incomplete,
                        std::string("ends where ") + header[headerLines_].meaning + " is expected",
                        "get a complete copy");
    if (headerLines_ >= sizeLines) account_.missing += size_[0] * size_[1];
    RefuseLine(std::string("where the text ends before ") + header[headerLines_].meaning);
}

/// The library's reader takes colours as digits only.
bool PtxPass::ColoursAreWhole() {
    constexpr double most = std::numeric_limits<std::int32_t>::max();
    for (std::size_t i = withoutColour; i < inLine_; ++i) {
        LookAtColour(values_[i]);
        if (values_[i].isDigits) continue;
        const double colour = values_.Number(values_[i]);
        if (!(std::fabs(colour) <= most && colour == std::floor(colour))) return false;
        NoteUnusual();
    }
    return true;
}

void PtxPass::WriteCell() {
    if (held_ == 0) copy_->BeginBlock(sizeLines, pose_);
    std::string& line = copy_->Text();
    for (std::size_t i = 0; i < inLine_; ++i) {
        if (i < withoutColour || values_[i].isDigits)
            values_.AppendPlain(values_[i], line);
        else
            line += std::to_string(static_cast<std::int32_t>(values_.Number(values_[i])));
        line += ' ';
    }
    line.back() = '\n';
    copy_->Flow();
}

}  // namespace vpc
