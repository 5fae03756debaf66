#include "vpc/scan/TextScanCheck.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <memory>

#include "vpc/scan/ScanFault.h"
#include "vpc/scan/TextLines.h"
#include "vpc/scan/TextScanCopy.h"

namespace vpc {

namespace {

using Kind = ScanFault::Kind;
using Value = LineValues::Value;

constexpr const char* completeCopy = "get a complete copy";
constexpr double mostColour = 65535.0;

std::string text(unsigned long long number) {
    return std::to_string(number);
}

/// One reading of a text scan: what PTS and PTX have in common.
class Pass {
public:
    Pass(const std::string& file, const TextDialect& dialect, TextScanCheck::Rules rules,
         TextScanCopy* copy)
        : lines_(file), values_(dialect.style), dialect_(dialect), rules_(rules), copy_(copy) {}
    Pass(const Pass&) = delete;
    Pass& operator=(const Pass&) = delete;
    virtual ~Pass() = default;

    TextScanAccount Run(const TextScanCheck::Progress& progress) {
        account_.isPlain = dialect_.IsPlain();
        unsigned long long reported = 0;
        while (lines_.Next()) {
            if (lines_.BytesRead() != reported) progress(reported = lines_.BytesRead());
            TakeLine();
            if (!account_.isPlain && copy_ == nullptr) return account_;
        }
        End();
        if (account_.points == 0) throw ScanFault(Kind::Empty, "holds no points", completeCopy);
        return account_;
    }

protected:
    /// A line of numbers, at least one.
    virtual void TakeValues() = 0;
    /// The text's end.
    virtual void End() = 0;

    /// A block has ended for which line `claimLine` announced `claimed` points and `held` came.
    void CompareCounts(unsigned long long claimed, unsigned long long held,
                       unsigned long long claimLine) {
        const unsigned long long lines = held + account_.badLines - badLinesCounted_;
        badLinesCounted_ = account_.badLines;
        if (claimed == lines) return;
        if (!rules_.allowIncomplete)
            throw ScanFault(Kind::Incomplete,
                            "claims " + text(claimed) + (claimed == 1 ? " point" : " points") +
                                " in line " + text(claimLine) + " and has " + text(lines),
                            completeCopy);
        account_.missing += claimed > lines ? claimed - lines : 0;
        account_.surplus += lines > claimed ? lines - claimed : 0;
        NoteUnusual();
    }
    void RefuseLine(const std::string& why) {
        const std::string problem =
            TextLines::Shown(lines_.Line()) + " in line " + text(lines_.Number()) + ", " + why;
        if (!rules_.allowIncomplete)
            throw ScanFault(Kind::Incomplete, "holds " + problem, "correct it");
        if (account_.badLines++ == 0) account_.firstBadLine = problem;
        NoteUnusual();
    }
    /// Something that has been understood but that the library's readers do not take.
    void NoteUnusual() {
        if (rules_.strict)
            throw ScanFault(Kind::Unusable,
                            "is not plain in line " + text(lines_.Number()) + ", which holds " +
                                TextLines::Shown(lines_.Line()),
                            "leave out --text strict to have it read");
        account_.isPlain = false;
    }
    /// Counts a line whose colours are not what they should be.
    void LookAtColour(const Value& value) {
        constexpr std::ptrdiff_t shortDigits = 4;
        if (value.isDigits && value.end - value.begin <= shortDigits) return;
        const double colour = values_.Number(value);
        if (colour >= 0.0 && colour <= mostColour && colour == std::floor(colour)) return;
        if (account_.firstOddColour == lines_.Number()) return;
        if (account_.oddColours++ == 0) account_.firstOddColour = lines_.Number();
    }

    TextLines lines_;
    LineValues values_;
    const TextDialect& dialect_;
    TextScanCheck::Rules rules_;
    TextScanCopy* copy_;
    TextScanAccount account_;

private:
    unsigned long long badLinesCounted_ = 0;

    void TakeLine() {
        const std::string_view line = lines_.Line();
        if (!values_.Read(line)) return TakeWords(line);
        if (values_.Count() == 0) return;
        if (lines_.HasManyReturns()) NoteUnusual();
        TakeValues();
    }

    void TakeWords(std::string_view line) {
        const bool isSkipped =
            TextDialect::IsComment(line) || (account_.points == 0 && TextDialect::IsWords(line));
        if (isSkipped) {
            ++account_.wordLines;
            return NoteUnusual();
        }
        const char* const end = line.data() + line.size();
        const std::string_view rest(values_.Place(),
                                    static_cast<std::size_t>(end - values_.Place()));
        const std::string_view word =
            rest.substr(0, rest.find_first_of(std::string(" \t") + dialect_.style.separator));
        RefuseLine(word.size() == line.size()
                       ? "which is no number"
                       : "where " + TextLines::Shown(word) + " is no number");
    }
};

class PtsPass : public Pass {
public:
    using Pass::Pass;

private:
    void TakeValues() override {
        if (dialect_.hasCounts && values_.Count() == 1 && values_[0].isDigits) return BeginBlock();
        if (values_.Count() != dialect_.columns.inLine)
            return RefuseLine("which has " + text(values_.Count()) +
                              (values_.Count() == 1 ? " value" : " values") +
                              " where the lines before have " + text(dialect_.columns.inLine));
        if (values_.IsUnusual()) NoteUnusual();
        if (dialect_.columns.HasColours())
            for (std::size_t i = dialect_.columns.used.size() - 3; i < dialect_.columns.used.size();
                 ++i)
                LookAtColour(values_[dialect_.columns.used[i]]);
        if (copy_ != nullptr) WritePoint();
        ++held_;
        ++account_.points;
    }

    void BeginBlock() {
        EndBlock();
        const std::string_view digits = values_[0].Text();
        const auto [end, error] =
            std::from_chars(digits.data(), digits.data() + digits.size(), claimed_);
        if (error != std::errc())
            throw ScanFault(Kind::Unusable,
                            "holds the count " + TextLines::Shown(digits) + " in line " +
                                text(lines_.Number()) + ", which cannot be true",
                            "correct it");
        claimLine_ = lines_.Number();
        // The readers stop at a block without points.
        if (claimed_ == 0) NoteUnusual();
    }

    void EndBlock() {
        if (dialect_.hasCounts && claimLine_ != 0) CompareCounts(claimed_, held_, claimLine_);
        if (copy_ != nullptr && held_ != 0) copy_->EndBlock({held_, 0});
        held_ = 0;
    }

    void End() override { EndBlock(); }

    void WritePoint() {
        if (held_ == 0) copy_->BeginBlock(1, "");
        std::string& line = copy_->Text();
        for (const std::size_t column : dialect_.columns.used) {
            values_.AppendPlain(values_[column], line);
            line += ' ';
        }
        line.back() = '\n';
        copy_->Flow();
    }

    unsigned long long claimLine_ = 0;
    unsigned long long claimed_ = 0;
    unsigned long long held_ = 0;
};

class PtxPass : public Pass {
public:
    using Pass::Pass;

private:
    struct HeaderLine {
        std::size_t values;
        const char* meaning;
    };
    static constexpr std::array<HeaderLine, 10> header = {{{1, "the number of columns"},
                                                           {1, "the number of rows"},
                                                           {3, "the scanner's position"},
                                                           {3, "the scanner's X axis"},
                                                           {3, "the scanner's Y axis"},
                                                           {3, "the scanner's Z axis"},
                                                           {4, "the matrix's first row"},
                                                           {4, "the matrix's second row"},
                                                           {4, "the matrix's third row"},
                                                           {4, "the matrix's last row"}}};
    static constexpr std::size_t withoutColour = 4;
    static constexpr std::size_t withColour = 7;

    void TakeValues() override {
        if (headerLines_ == header.size() && values_.Count() == 1 && values_[0].isDigits) EndScan();
        if (headerLines_ < header.size()) return TakeHeader();
        if (inLine_ == 0 && (values_.Count() == withoutColour || values_.Count() == withColour))
            inLine_ = values_.Count();
        if (values_.Count() != inLine_)
            return RefuseLine(
                "which has " + text(values_.Count()) +
                (values_.Count() == 1 ? " value" : " values") + " where " +
                (inLine_ == 0 ? "a point has 4 or 7" : "the lines before have " + text(inLine_)));
        if (values_.IsUnusual()) NoteUnusual();
        if (!ColoursAreWhole()) return RefuseLine("where a colour is no whole number");
        if (copy_ != nullptr) WritePoint();
        ++held_;
        ++account_.points;
    }

    void TakeHeader() {
        const HeaderLine& expected = header[headerLines_];
        if (values_.Count() != expected.values || (headerLines_ < 2 && !TakeSize()))
            throw ScanFault(Kind::Unusable,
                            "holds " + TextLines::Shown(lines_.Line()) + " in line " +
                                text(lines_.Number()) + ", where " + expected.meaning +
                                " is expected",
                            "give a scan whose header has all of its ten lines");
        if (headerLines_ == 0) claimLine_ = lines_.Number();
        if (headerLines_ >= 2) {
            for (std::size_t i = 0; i < values_.Count(); ++i) {
                values_.AppendPlain(values_[i], pose_);
                pose_ += i + 1 == values_.Count() ? '\n' : ' ';
            }
            if (values_.IsUnusual()) NoteUnusual();
        }
        ++headerLines_;
        // The readers stop at a grid without cells.
        if (headerLines_ == header.size() && size_[0] * size_[1] == 0) NoteUnusual();
    }

    /// Reads the number of columns or rows; false where that cannot be one.
    bool TakeSize() {
        constexpr unsigned long long most = std::numeric_limits<std::uint32_t>::max();
        const std::string_view digits = values_[0].Text();
        unsigned long long& size = size_[headerLines_];
        const auto [end, error] =
            std::from_chars(digits.data(), digits.data() + digits.size(), size);
        return values_[0].isDigits && error == std::errc() && size <= most;
    }

    void EndScan() {
        CompareCounts(size_[0] * size_[1], held_, claimLine_);
        const bool isWhole = size_[0] * size_[1] == held_;
        if (copy_ != nullptr && held_ != 0)
            copy_->EndBlock(isWhole ? size_ : std::array<unsigned long long, 2>{held_, 1});
        held_ = 0;
        headerLines_ = 0;
        inLine_ = 0;
        pose_.clear();
    }

    void End() override {
        if (headerLines_ == header.size()) return EndScan();
        if (headerLines_ == 0) return;
        if (!rules_.allowIncomplete)
            throw ScanFault(
                Kind::Incomplete,
                std::string("ends where ") + header[headerLines_].meaning + " is expected",
                completeCopy);
        NoteUnusual();
    }

    /// The readers take whole numbers only, without an exponent.
    bool ColoursAreWhole() {
        for (std::size_t i = withoutColour; i < inLine_; ++i) {
            LookAtColour(values_[i]);
            if (values_[i].isDigits) continue;
            const double colour = values_.Number(values_[i]);
            if (!(std::fabs(colour) <= mostColour && colour == std::floor(colour))) return false;
            NoteUnusual();
        }
        return true;
    }

    void WritePoint() {
        if (held_ == 0) copy_->BeginBlock(2, pose_);
        std::string& line = copy_->Text();
        for (std::size_t i = 0; i < inLine_; ++i) {
            if (i < withoutColour || values_[i].isDigits)
                values_.AppendPlain(values_[i], line);
            else
                line += std::to_string(static_cast<int>(values_.Number(values_[i])));
            line += ' ';
        }
        line.back() = '\n';
        copy_->Flow();
    }

    std::size_t headerLines_ = 0;
    std::size_t inLine_ = 0;
    std::array<unsigned long long, 2> size_{};
    std::string pose_;
    unsigned long long claimLine_ = 0;
    unsigned long long held_ = 0;
};

}  // namespace

TextScanAccount TextScanCheck::Run(const std::string& file, const TextDialect& dialect, Rules rules,
                                   TextScanCopy* copy, const Progress& progress) {
    std::unique_ptr<Pass> pass;
    if (dialect.format == DataFormat_PTX)
        pass = std::make_unique<PtxPass>(file, dialect, rules, copy);
    else
        pass = std::make_unique<PtsPass>(file, dialect, rules, copy);
    return pass->Run(progress);
}

}  // namespace vpc
