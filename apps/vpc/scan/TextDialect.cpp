#include "vpc/scan/TextDialect.h"

#include <algorithm>
#include <array>
#include <cctype>

#include "vpc/common/Counted.h"
#include "vpc/common/NumberList.h"
#include "vpc/scan/ScanFault.h"
#include "vpc/scan/TextLines.h"

namespace vpc {

namespace {

/// What is looked at: far more than headers take, and enough to meet a number with decimals.
constexpr unsigned long long mostLines = 2000;
constexpr std::size_t mostBytes = std::size_t{256} << 10;
/// More lines of words before the first number are no header of a scan.
constexpr unsigned long long mostHeaderLines = 20;

/// The styles that are known, the more usual one first where several fit.
constexpr std::array<NumberStyle, 5> styles = {
    {{' ', '.'}, {';', '.'}, {';', ','}, {',', '.'}, {' ', ','}}};

/// A line that begins with a number.
struct NumberLine {
    unsigned long long number = 0;
    std::string text;
    std::size_t values = 0;
    bool isCount = false;
};

/// The first lines read in one style.
struct Reading {
    explicit Reading(NumberStyle numberStyle) : style(numberStyle), values(numberStyle) {}

    void Read(const TextLines& lines) {
        if (!values.Read(lines.Line())) return;
        ++linesRead;
        if (first.size() < 2)
            first.push_back({lines.Number(), std::string(lines.Line()), values.Count(),
                             values.Count() == 1 && values[0].isDigits});
    }

    NumberStyle style;
    LineValues values;
    unsigned long long linesRead = 0;
    /// The first two lines that could be read.
    std::vector<NumberLine> first;
};

std::string place(unsigned long long line) {
    return " in line " + std::to_string(line);
}

class DialectSearch {
public:
    explicit DialectSearch(const std::string& file) : lines_(file) {
        for (const NumberStyle& style : styles) readings_.emplace_back(style);
    }

    TextDialect Find() {
        ReadFirstLines();
        if (!firstNumbers_) FailWithoutNumbers();
        const Reading& best = *std::max_element(
            readings_.begin(), readings_.end(),
            [](const Reading& a, const Reading& b) { return a.linesRead < b.linesRead; });
        // The numbers of the first line decide on too much to be guessed.
        if (best.first.empty() || best.first.front().number != firstNumbers_->number)
            FailToUnderstand(*firstNumbers_);
        dialect_.style = best.style;
        dialect_.hasByteOrderMark = lines_.HasByteOrderMark();
        dialect_.endsWithReturns = lines_.EndsWithReturns();
        FindFormat(best);
        if (dialect_.format == DataFormat_PTS) FindColumns(best);
        RequireClearCommas(best);
        return dialect_;
    }

private:
    void ReadFirstLines() {
        std::size_t bytes = 0;
        while (lines_.Number() < mostLines && bytes < mostBytes && lines_.Next()) {
            const std::string_view line = lines_.Line();
            bytes += line.size() + 1;
            if (line.find_first_not_of(" \t") == std::string_view::npos) {
                if (!hasPoint_) ++dialect_.blankLinesBefore;
            } else if (TextDialect::IsWords(line)) {
                TakeWords(line);
            } else {
                TakeNumbers(line);
            }
        }
    }

    void TakeWords(std::string_view line) {
        if (hasPoint_) return;
        if (!TextDialect::IsComment(line)) RequireWordsOnly(line);
        // Where a line names columns, the next one should be a point's.
        if (!firstWords_ || (columns_ && firstWords_->number <= columnsLine_))
            firstWords_ = NumberLine{lines_.Number(), std::string(line), 0, false};
        ++dialect_.linesBefore;
        if (!firstNumbers_ && !TextDialect::IsComment(line) && ++headerLines_ > mostHeaderLines)
            FailToUnderstand(*firstWords_);
        if (const auto columns = TextColumns::Named(line)) {
            columns_ = columns;
            columnsLine_ = lines_.Number();
        }
    }

    /// A line that begins with a word and goes on with numbers may be a point whose first value is
    /// damaged or missing.
    void RequireWordsOnly(std::string_view line) const {
        constexpr std::string_view separators = " \t,;";
        std::size_t numbers = 0;
        for (std::size_t end = 0; end < line.size();) {
            const std::size_t start = line.find_first_not_of(separators, end);
            if (start == std::string_view::npos) break;
            end = std::min(line.find_first_of(separators, start), line.size());
            if (NumberList::Parse(line.substr(start, end - start))) ++numbers;
        }
        if (numbers < 2) return;
        throw ScanFault(ScanFault::Kind::Unusable,
                        "holds " + TextLines::Shown(std::string(line)) + place(lines_.Number()) +
                            ", which may be a point whose first value is no number",
                        "correct it, or begin it with # if it is a comment");
    }

    void TakeNumbers(std::string_view line) {
        if (!firstNumbers_)
            firstNumbers_ = NumberLine{lines_.Number(), std::string(line), 0, false};
        for (Reading& reading : readings_) {
            reading.Read(lines_);
            hasPoint_ = hasPoint_ || reading.values.Count() > 1;
        }
        hasDecimalPoint_ = hasDecimalPoint_ || line.find('.') != std::string_view::npos;
        LookAtCommas(line);
    }

    /// Notes whether commas stand alone between two numbers or have blanks beside them.
    void LookAtCommas(std::string_view line) {
        constexpr std::string_view blanks = " \t";
        for (std::size_t at = line.find(','); at != std::string_view::npos;
             at = line.find(',', at + 1)) {
            const bool isLast = at + 1 == line.size();
            const bool isLoose = (at > 0 && blanks.find(line[at - 1]) != std::string_view::npos) ||
                                 (!isLast && blanks.find(line[at + 1]) != std::string_view::npos);
            if (isLoose) {
                hasLooseComma_ = true;
            } else if (!isLast && !firstTightComma_) {
                firstTightComma_ = NumberLine{lines_.Number(), std::string(line), 0, false};
            }
        }
    }

    [[noreturn]] void FailWithoutNumbers() const {
        if (firstWords_) FailToUnderstand(*firstWords_);
        throw ScanFault(ScanFault::Kind::Empty, "holds nothing but blank lines",
                        "get a complete copy");
    }

    [[noreturn]] static void FailToUnderstand(const NumberLine& line) {
        const bool mixes = line.text.find(',') != std::string::npos &&
                           line.text.find('.') != std::string::npos && line.values == 0;
        const bool isWords = TextDialect::IsWords(line.text);
        throw ScanFault(ScanFault::Kind::Unusable,
                        "holds " + TextLines::Shown(line.text) + place(line.number) +
                            (isWords ? ", which is no line of a scan"
                             : mixes ? ", which mixes points and commas"
                                     : ", which is no line of numbers"),
                        "give scans only, with numbers that have a decimal point and blanks "
                        "between them");
    }

    void FindFormat(const Reading& reading) {
        const NumberLine& first = reading.first.front();
        const bool isOne = reading.first.size() == 1;
        if (first.values == 1 && !first.isCount) FailToUnderstand(first);
        if (first.isCount && isOne)
            throw ScanFault(
                ScanFault::Kind::Empty,
                "holds a count in line " + std::to_string(first.number) + " and no points",
                "get a complete copy");
        const bool isGrid = first.isCount && reading.first[1].values == 1;
        dialect_.format = isGrid ? DataFormat_PTX : DataFormat_PTS;
        dialect_.hasCounts = first.isCount;
    }

    void FindColumns(const Reading& reading) {
        const NumberLine& point = dialect_.hasCounts ? reading.first[1] : reading.first[0];
        const std::string holds = "holds " + counted(point.values, "value") + place(point.number) +
                                  " (" + TextLines::Shown(point.text) + ")";
        if (columns_ && columns_->inLine != point.values)
            throw ScanFault(ScanFault::Kind::Unusable,
                            holds + ", where line " + std::to_string(columnsLine_) + " names " +
                                counted(columns_->inLine, "column"),
                            "correct that line or remove it");
        const auto columns = columns_ ? columns_ : TextColumns::Unnamed(point.values);
        if (!columns)
            throw ScanFault(ScanFault::Kind::Unusable, holds + ", where a point has 3, 4, 6 or 7",
                            "name the columns in a line before the points, such as "
                            "'//X Y Z Intensity Class'");
        dialect_.columns = *columns;
        dialect_.columnsAreNamed = columns_.has_value();
    }

    /// Where no number has a decimal point, commas may be meant as such.
    void RequireClearCommas(const Reading& reading) const {
        // Three pairs, perhaps with an intensity behind them.
        constexpr std::array<std::size_t, 2> ofPairs = {6, 7};
        if (reading.style.separator != ',' || hasDecimalPoint_ || columns_ || !firstTightComma_)
            return;
        const bool mayBePairs =
            dialect_.format == DataFormat_PTS &&
            std::find(ofPairs.begin(), ofPairs.end(), dialect_.columns.inLine) != ofPairs.end();
        if (!hasLooseComma_ && !mayBePairs) return;
        throw ScanFault(ScanFault::Kind::Unusable,
                        "holds " + TextLines::Shown(firstTightComma_->text) +
                            place(firstTightComma_->number) +
                            ", where commas may separate numbers or be decimal",
                        "name the columns in a line before the points, such as "
                        "'//X,Y,Z,R,G,B', or write blanks between the numbers");
    }

    TextLines lines_;
    TextDialect dialect_;
    std::vector<Reading> readings_;
    /// The first line of words, or the first after one that names columns.
    std::optional<NumberLine> firstWords_;
    std::optional<NumberLine> firstNumbers_;
    unsigned long long headerLines_ = 0;
    bool hasPoint_ = false;
    bool hasDecimalPoint_ = false;
    bool hasLooseComma_ = false;
    /// The first line with a comma that has no blank beside it.
    std::optional<NumberLine> firstTightComma_;
    std::optional<TextColumns> columns_;
    unsigned long long columnsLine_ = 0;
};

}  // namespace

TextDialect TextDialect::Of(const std::string& file) {
    return DialectSearch(file).Find();
}

bool TextDialect::IsComment(std::string_view line) {
    line.remove_prefix(std::min(line.find_first_not_of(" \t"), line.size()));
    constexpr std::string_view endOfDosText = "\x1a";
    return line.starts_with('#') || line.starts_with("//") || line.starts_with('%') ||
           line == endOfDosText;
}

bool TextDialect::IsWords(std::string_view line) {
    line.remove_prefix(std::min(line.find_first_not_of(" \t"), line.size()));
    const std::string_view word = line.substr(0, line.find_first_of(" \t,;"));
    const bool beginsNumber =
        !line.empty() && std::string_view("0123456789+-.").find(line[0]) != std::string_view::npos;
    return !beginsNumber && word != "nan" && word != "NaN" && word != "NAN" && word != "inf" &&
           word != "Inf" && word != "INF";
}

bool TextDialect::IsPlain() const {
    const bool isPlainPts = hasCounts && columns.AreInOrder() && blankLinesBefore == 0;
    return style.IsPlain() && !hasByteOrderMark && !endsWithReturns && linesBefore == 0 &&
           (format == DataFormat_PTX || isPlainPts);
}

std::vector<std::string> TextDialect::Particulars(unsigned long long linesSkipped) const {
    std::vector<std::string> list;
    const auto add = [&](bool holds, const std::string& words) {
        if (holds) list.push_back(words);
    };
    add(hasByteOrderMark, "a byte order mark");
    add(linesSkipped != 0, counted(linesSkipped, "header or comment line") + " skipped");
    add(columnsAreNamed && !columns.AreInOrder(), "columns taken by their names");
    std::string unused;
    for (const std::string& name : columns.unused)
        unused += (unused.empty() ? "" : ", ") + ("'" + name + "'");
    add(!unused.empty(), unused + " left out");
    add(style.separator == ';', "semicolons between values");
    add(style.separator == ',', "commas between values");
    add(style.decimal == ',', "a decimal comma");
    add(endsWithReturns, "lines that end with carriage returns");
    add(format == DataFormat_PTS && !hasCounts, "no count line");
    add(blankLinesBefore != 0 && format == DataFormat_PTS, "blank lines before the points");
    return list;
}

}  // namespace vpc
