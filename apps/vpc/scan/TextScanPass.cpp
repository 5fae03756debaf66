#include "vpc/scan/TextScanPass.h"

#include <cmath>

#include "vpc/common/Counted.h"
#include "vpc/scan/ScanFault.h"

namespace vpc {

namespace {

using Kind = ScanFault::Kind;

constexpr double mostColour = 65535.0;

}  // namespace

TextScanAccount TextScanPass::Run(const TextScanCheck::Progress& progress) {
    account_.isPlain = dialect_.IsPlain();
    unsigned long long reported = 0;
    while (lines_.Next()) {
        if (lines_.BytesRead() != reported) progress(reported = lines_.BytesRead());
        TakeLine();
        if (!account_.isPlain && copy_ == nullptr) return account_;
    }
    End();
    if (account_.points == 0)
        throw ScanFault(Kind::Empty, "holds no points", "get a complete copy");
    return account_;
}

void TextScanPass::TakeLine() {
    if (!values_.Read(lines_.Line())) return TakeWords();
    if (values_.Count() == 0) return;
    if (lines_.HasManyReturns()) NoteUnusual();
    TakeValues();
}

void TextScanPass::TakeWords() {
    const std::string_view line = lines_.Line();
    if (TextDialect::IsComment(line) || (account_.points == 0 && TextDialect::IsWords(line))) {
        ++account_.wordLines;
        return NoteUnusual();
    }
    const auto before = static_cast<std::size_t>(values_.Place() - line.data());
    const std::string_view rest = line.substr(before);
    const std::string_view word =
        rest.substr(0, rest.find_first_of(std::string(" \t") + dialect_.style.separator));
    RefuseLine(word.size() == line.size() ? "which is no number"
                                          : "where " + TextLines::Shown(word) + " is no number");
}

void TextScanPass::CompareCounts(unsigned long long claimed, unsigned long long held,
                                 unsigned long long claimLine) {
    const unsigned long long lines = held + account_.badLines - badLinesCounted_;
    badLinesCounted_ = account_.badLines;
    if (claimed == lines) return;
    if (!rules_.allowIncomplete)
        throw ScanFault(Kind::Incomplete,
                        "claims " + counted(claimed, "point") + " in line " +
                            std::to_string(claimLine) + " and has " + std::to_string(lines),
                        "get a complete copy");
    account_.missing += claimed > lines ? claimed - lines : 0;
    account_.surplus += lines > claimed ? lines - claimed : 0;
    account_.isPlain = false;
}

void TextScanPass::RefuseLine(const std::string& why) {
    const std::string problem = ShownLine() + ", " + why;
    if (!rules_.allowIncomplete)
        throw ScanFault(Kind::Incomplete, "holds " + problem, "correct it");
    if (account_.badLines++ == 0) account_.firstBadLine = problem;
    account_.isPlain = false;
}

void TextScanPass::RefuseCount(const std::string& expected) {
    RefuseLine("which has " + counted(values_.Count(), "value") + " where " + expected);
}

void TextScanPass::NoteUnusual() {
    if (rules_.strict)
        throw ScanFault(Kind::Unusable, "is not plain text: it holds " + ShownLine(),
                        "leave out --text strict to have it read");
    account_.isPlain = false;
}

bool TextScanPass::LookAtColour(const LineValues::Value& value) {
    constexpr std::ptrdiff_t shortDigits = 4;
    if (value.isDigits && value.end - value.begin <= shortDigits) return true;
    const double colour = values_.Number(value);
    if (colour >= 0.0 && colour <= mostColour && colour == std::floor(colour)) return true;
    if (lastOddColour_ == lines_.Number()) return false;
    lastOddColour_ = lines_.Number();
    if (account_.oddColours++ == 0) account_.firstOddColour = lines_.Number();
    return false;
}

std::string TextScanPass::ShownLine() const {
    return TextLines::Shown(lines_.Line()) + " in line " + std::to_string(lines_.Number());
}

}  // namespace vpc
