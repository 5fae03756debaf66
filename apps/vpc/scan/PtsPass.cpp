#include "vpc/scan/PtsPass.h"

#include <charconv>
#include <cmath>

#include "vpc/scan/ScanFault.h"
#include "vpc/scan/TextScanCopy.h"

namespace vpc {

void PtsPass::TakeValues() {
    if (dialect_.hasCounts && values_.Count() == 1 && values_[0].isDigits) return BeginBlock();
    const TextColumns& columns = dialect_.columns;
    if (values_.Count() != columns.inLine)
        return RefuseCount("the lines before have " + std::to_string(columns.inLine));
    if (values_.IsUnusual()) NoteUnusual();
    if (columns.HasColours() && !dialect_.hasCounts && !dialect_.columnsAreNamed) RequireColours();
    if (columns.HasColours())
        for (std::size_t i = columns.used.size() - 3; i < columns.used.size(); ++i)
            LookAtColour(values_[columns.used[i]]);
    if (copy_ != nullptr) WritePoint();
    ++held_;
    ++account_.points;
}

/// Without a count the text may come from anywhere, and its last columns may be normals, for
/// example.
void PtsPass::RequireColours() {
    constexpr double most = 65535.0;
    const TextColumns& columns = dialect_.columns;
    for (std::size_t i = columns.used.size() - 3; i < columns.used.size(); ++i) {
        const double colour = values_.Number(values_[columns.used[i]]);
        if (!(colour >= 0.0 && colour <= most && colour == std::floor(colour)))
            throw ScanFault(
                ScanFault::Kind::Unusable,
                "holds " + ShownLine() + ", whose last three values are no colours from 0 to 65535",
                "name the columns in a line before the points, such as "
                "'//X Y Z NX NY NZ'");
    }
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
