#include "vpc/scan/PtsPass.h"

#include <charconv>

#include "vpc/scan/ScanFault.h"
#include "vpc/scan/TextScanCopy.h"

namespace vpc {

void PtsPass::TakeValues() {
    if (dialect_.hasCounts && values_.Count() == 1 && values_[0].isDigits) return BeginBlock();
    const TextColumns& columns = dialect_.columns;
    if (values_.Count() != columns.inLine)
        return RefuseCount("the lines before have " + std::to_string(columns.inLine));
    if (values_.IsUnusual()) NoteUnusual();
    if (columns.HasColours()) LookAtColours();
    if (copy_ != nullptr) WritePoint();
    ++held_;
    ++account_.points;
}

void PtsPass::LookAtColours() {
    const TextColumns& columns = dialect_.columns;
    // Without a count the text may come from anywhere, and its last columns may be normals, for
    // example.
    const bool mayBeOthers = !dialect_.hasCounts && !dialect_.columnsAreNamed;
    for (std::size_t i = columns.used.size() - 3; i < columns.used.size(); ++i)
        if (!LookAtColour(values_[columns.used[i]]) && mayBeOthers)
            throw ScanFault(
                ScanFault::Kind::Unusable,
                "holds " + ShownLine() + ", whose last three values are no colours from 0 to 65535",
                "name the columns in a line before the points, such as '//X Y Z NX NY NZ'");
}

void PtsPass::BeginBlock() {
    EndBlock();
    const std::string_view digits = values_[0].Text();
    const char* const end = digits.data() + digits.size();
    if (std::from_chars(digits.data(), end, claimed_).ec != std::errc())
        throw ScanFault(ScanFault::Kind::Unusable,
                        "holds " + ShownLine() + ", which is too large for a count", "correct it");
    claimLine_ = lines_.Number();
    // The library's reader stops at a block without points.
    if (claimed_ == 0) NoteUnusual();
}

void PtsPass::EndBlock() {
    if (claimLine_ != 0) CompareCounts(claimed_, held_, claimLine_);
    if (copy_ != nullptr && held_ != 0) copy_->EndBlock({held_, 0});
    held_ = 0;
}

void PtsPass::WritePoint() {
    if (held_ == 0) copy_->BeginBlock(1, "");
    std::string& line = copy_->Text();
    for (const std::size_t column : dialect_.columns.used) {
        values_.AppendPlain(values_[column], line);
        line += ' ';
    }
    line.back() = '\n';
    copy_->Flow();
}

}  // namespace vpc
