#include "io/ScanAccount.h"

#include <algorithm>
#include <limits>

#include <wx/translation.h>

#include "core/util/IoError.h"

namespace {

using Kind = ScanFault::Kind;

/// A number as the choice between singular and plural takes it.
unsigned many(unsigned long long number) {
    return static_cast<unsigned>(
        std::min<unsigned long long>(number, std::numeric_limits<unsigned>::max()));
}

/// Puts an account into sentences.
class AccountDescriber {
public:
    explicit AccountDescriber(ScanAccount& account) : account_(account) {}

    void Describe();

private:
    void DescribeBeginning();
    void DescribeValues();
    void DescribePointsWithoutValues();
    void DescribeUnreadLines();
    void DescribeRecords();
    void DescribePoints();

    bool Has(Kind kind) const { return account_.Find(kind) != nullptr; }
    bool IsPtx() const { return account_.format == DataFormat_PTX; }
    /// Points of a PTS that were made up because the text begins with no count.
    unsigned long long PointsOfNoCount() const;

    template <class... Values>
    void Say(const wxString& format, Values... values) {
        account_.sentences.push_back(account_.file + ": " + wxString::Format(format, values...));
    }
    /// The same of a line of the text, which `format` names first.
    template <class... Values>
    void SayOfLine(Kind kind, const wxString& format, Values... values) {
        const ScanFault& fault = *account_.Find(kind);
        Say(format, fault.line, fault.text, values...);
    }

    ScanAccount& account_;
};

void AccountDescriber::Describe() {
    account_.sentences.clear();
    if (!account_.opened) {
        const vpc::IoError failure(account_.file, wxGetTranslation("cannot be opened"),
                                   account_.openError);
        account_.sentences.push_back(
            wxString::Format(wxGetTranslation("%s and is left out"), failure.Message()));
        return;
    }
    // Behind a line that was taken for a count, nobody knows what it would hold.
    if (account_.points == 0 && !Has(Kind::OddCount)) Say(wxGetTranslation("it holds no points"));
    DescribeBeginning();
    DescribeValues();
    DescribePointsWithoutValues();
    DescribeUnreadLines();
    DescribeRecords();
    DescribePoints();
}

unsigned long long AccountDescriber::PointsOfNoCount() const {
    const bool madeUp = !IsPtx() && (Has(Kind::NoText) || Has(Kind::NoCount));
    return madeUp ? std::min(account_.pointsWithoutValues, 1ULL) : 0;
}

void AccountDescriber::DescribeBeginning() {
    if (Has(Kind::NoCount)) {
        if (IsPtx())
            SayOfLine(Kind::NoCount, wxGetTranslation("line %llu ('%s') does not begin a grid with "
                                                      "cells, so nothing was read"));
        else if (PointsOfNoCount() != 0)
            SayOfLine(Kind::NoCount, wxGetTranslation("line %llu ('%s') is no count of points, so "
                                                      "the scan was not read and one point was "
                                                      "made up"));
        else
            SayOfLine(Kind::NoCount, wxGetTranslation("line %llu ('%s') is no count of points, so "
                                                      "only one point was read"));
    } else if (Has(Kind::NoText) && !IsPtx()) {
        Say(wxGetTranslation("it is empty, and one point was made up"));
    }
    if (Has(Kind::UnreadableLayout))
        return SayOfLine(Kind::UnreadableLayout,
                         wxGetTranslation("line %llu ('%s') holds %llu values, where a point has "
                                          "3, 4, 6 or 7, so nothing was read and %llu points were "
                                          "made up"),
                         account_.valuesPerPoint, account_.pointsWithoutValues);
    if (!Has(Kind::OddCount)) return;
    if (IsPtx())
        SayOfLine(Kind::OddCount,
                  wxGetTranslation("line %llu ('%s') stands where the columns and "
                                   "rows of a grid belong, and was taken for them"));
    else
        SayOfLine(Kind::OddCount, wxGetTranslation("line %llu ('%s') stands where a count of "
                                                   "points belongs, and was taken for one"));
}

void AccountDescriber::DescribeValues() {
    const ScanFault* const noNumber = account_.Find(Kind::NoNumber);
    const ScanFault* const oddLine = account_.Find(Kind::OddLine);
    const ScanFault* const noCount = account_.Find(Kind::NoCount);
    // What is told of once is not told of again: words behind the values of a line make it odd, and
    // so does a value that was not read the lines after it.
    const bool isTold =
        noNumber != nullptr && noCount != nullptr && noNumber->line == noCount->line;
    if (noNumber != nullptr && !isTold && IsPtx())
        SayOfLine(Kind::NoNumber, wxGetTranslation("line %llu ('%s') holds a value that is no "
                                                   "number or, for a colour, no whole number"));
    else if (noNumber != nullptr && !isTold)
        SayOfLine(Kind::NoNumber,
                  wxGetTranslation("line %llu ('%s') holds a value that is no number"));
    if (oddLine == nullptr || (noNumber != nullptr && noNumber->line <= oddLine->line)) return;
    if (IsPtx())
        SayOfLine(Kind::OddLine, wxGetTranslation("line %llu ('%s') has more or fewer values than "
                                                  "a cell, so points from there on are mixed up"));
    else
        SayOfLine(Kind::OddLine, wxGetTranslation("line %llu ('%s') has more or fewer values than "
                                                  "line 2, so points from there on are mixed up"));
}

void AccountDescriber::DescribePointsWithoutValues() {
    const unsigned long long claimed = account_.claimedPoints;
    const unsigned long long n = account_.pointsWithoutValues - PointsOfNoCount();
    if (n == 0 || Has(Kind::UnreadableLayout)) return;
    const bool textEnds = !Has(Kind::NoNumber);
    if (IsPtx() && textEnds)
        Say(wxGetTranslation("its text lacks %llu of the %llu cells that it claims"), n, claimed);
    else if (IsPtx())
        Say(wxGetTranslation("%llu of the %llu cells that it claims could not be read"), n,
            claimed);
    else if (textEnds)
        Say(wxGetTranslation("its text lacks %llu of the %llu points that it claims, and zeros "
                             "stand for them"),
            n, claimed);
    else
        Say(wxGetTranslation("%llu of the %llu points that it claims could not be read, and zeros "
                             "stand for them"),
            n, claimed);
}

void AccountDescriber::DescribeUnreadLines() {
    if (!Has(Kind::UnreadLines) || Has(Kind::UnreadableLayout)) return;
    const unsigned long long lines = account_.unreadLines;
    if (Has(Kind::NoNumber))
        SayOfLine(
            Kind::UnreadLines,
            wxGetTranslation("from line %llu ('%s') on, %llu line was not read",
                             "from line %llu ('%s') on, %llu lines were not read", many(lines)),
            lines);
    else if (IsPtx())
        SayOfLine(Kind::UnreadLines,
                  wxGetTranslation("from line %llu ('%s') on, %llu line behind the last grid was "
                                   "not read",
                                   "from line %llu ('%s') on, %llu lines behind the last grid "
                                   "were not read",
                                   many(lines)),
                  lines);
    else
        SayOfLine(Kind::UnreadLines,
                  wxGetTranslation("from line %llu ('%s') on, %llu line beyond the %llu points "
                                   "that it claims was not read",
                                   "from line %llu ('%s') on, %llu lines beyond the %llu points "
                                   "that it claims were not read",
                                   many(lines)),
                  lines, account_.claimedPoints);
}

void AccountDescriber::DescribeRecords() {
    if (account_.missingRecords != 0) account_.sentences.push_back(account_.MissingRecordsText());
    if (account_.unexplainedBytes != 0)
        Say(wxGetTranslation("nothing in its header explains %llu byte behind its points",
                             "nothing in its header explains %llu bytes behind its points",
                             many(account_.unexplainedBytes)),
            account_.unexplainedBytes);
}

void AccountDescriber::DescribePoints() {
    if (account_.pointsCutShort != 0)
        Say(wxGetTranslation("%llu point lacks some of its values, and zeros stand for them",
                             "%llu points lack some of their values, and zeros stand for them",
                             many(account_.pointsCutShort)),
            account_.pointsCutShort);
    if (account_.oddColours != 0)
        Say(wxGetTranslation("%llu red, green or blue lies beyond 0 to 65535, and its low 16 bits "
                             "were kept",
                             "%llu reds, greens and blues lie beyond 0 to 65535, and their low 16 "
                             "bits were kept",
                             many(account_.oddColours)),
            account_.oddColours);
    if (account_.nonFinitePoints != 0)
        Say(wxGetTranslation("%llu points with a coordinate that is no finite number, or is out of "
                             "all bounds, were left out"),
            account_.nonFinitePoints);
}

}  // namespace

void ScanAccount::Describe() {
    AccountDescriber(*this).Describe();
}

wxString ScanAccount::MissingRecordsText() const {
    return wxString::Format(
        wxGetTranslation("%s: %llu of the %llu points that the las header claims are missing"),
        file, missingRecords, claimedPoints);
}
