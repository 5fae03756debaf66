#include "vpc/unit/UnitChoice.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <utility>

#include "core/geometry/NumberText.h"
#include "core/util/DisplayText.h"
#include "core/util/DrawingUnits.h"
#include "platform/OdDbUnits.h"
#include "vpc/common/Counted.h"
#include "vpc/unit/ProjDatabase.h"
#include "vpc/unit/ScanUnit.h"

namespace vpc {

namespace {

using Code = unsigned long long;

bool namesSurveyFoot(std::string text) {
    for (char& c : text) {
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
        if (c == '_' || c == ' ') c = '-';
    }
    constexpr std::array names = {"us-ft",          "usft",           "ft-us",       "ftus",
                                  "us-survey-foot", "us-survey-feet", "survey-foot", "survey-feet"};
    return std::find(names.begin(), names.end(), text) != names.end();
}

double metresOf(Code code) {
    return oddbGetUnitsConversion(static_cast<OdDb::UnitsValue>(code),
                                  static_cast<OdDb::UnitsValue>(DrawingUnits::metres));
}

/// The code whose unit comes nearest: the same one, or one that differs by so little that maps in
/// both are called by one name, as those in international and in US survey feet.
std::optional<Code> codeOf(const CoordinateUnit& unit) {
    constexpr double tolerance = 2e-5;
    for (Code code = DrawingUnits::undefined + 1; !DrawingUnits::Name(code).empty(); ++code) {
        const double metres = metresOf(code);
        if (std::abs(unit.metres - metres) <= tolerance * metres) return code;
    }
    return std::nullopt;
}

std::string quoted(const std::vector<std::string>& scans) {
    std::string first = "'" + scans.front() + "'";
    const std::size_t others = scans.size() - 1;
    if (others == 0) return first;
    return first + " and " + counted(others, "other");
}

std::string text(const ScanUnit::Statement& statement) {
    return statement.unit.name + " (by " + statement.source + ")";
}

/// Scans that have something in common.
template <class Common>
struct ScanGroup {
    Common common;
    std::vector<std::string> scans;
};

/// Adds a scan to the first group that `fits`, or to a new one. So a hundred tiles of one kind take
/// one sentence.
template <class Common, class Fits>
void addTo(std::vector<ScanGroup<Common>>& groups, const Common& common, const std::string& scan,
           const Fits& fits) {
    const auto group = std::find_if(groups.begin(), groups.end(),
                                    [&](const auto& other) { return fits(other.common); });
    if (group != groups.end())
        group->scans.push_back(scan);
    else
        groups.push_back({common, {scan}});
}

class Chooser {
public:
    Chooser(const std::string& option, const std::vector<std::string>& scans)
        : automatic_(option == UnitChoice::automatic), scans_(scans) {
        ProjDatabase database;
        for (const std::string& scan : scans) {
            units_.push_back(ScanUnit::Read(scan, database));
            largestCoordinate_ = std::max(largestCoordinate_, units_.back().largestCoordinate);
        }
        if (!automatic_) Want(option);
    }

    UnitChoice Choose() {
        const std::optional<Code> named = CodeOfScans();
        choice_.code = automatic_ ? named.value_or(DrawingUnits::metres) : wantedCode_;
        for (std::size_t i = 0; i < scans_.size(); ++i) Judge(units_[i], scans_[i]);
        if (automatic_) Explain(named.has_value());
        if (wantsSurveyFoot_ && named_.empty())
            choice_.warnings.push_back("--unit: " + Shortcoming(surveyFoot().name, surveyFoot()));
        for (const auto& [remark, scans] : remarks_)
            choice_.warnings.push_back(quoted(scans) + ": " + remark);
        return std::move(choice_);
    }

private:
    void Want(const std::string& option) {
        wantsSurveyFoot_ = namesSurveyFoot(option);
        wantedCode_ = wantsSurveyFoot_ ? DrawingUnits::feet : *DrawingUnits::Parse(option);
        wantedName_ = wantsSurveyFoot_ ? surveyFoot().name : DrawingUnits::Name(wantedCode_);
    }

    std::string Stored() const { return DrawingUnits::Name(choice_.code) + " is stored"; }

    std::optional<Code> CodeOfScans() const {
        for (const ScanUnit& unit : units_)
            if (!unit.horizontal.empty())
                if (const auto code = codeOf(unit.horizontal.front().unit)) return code;
        return std::nullopt;
    }

    /// Finds what is worth saying about one scan.
    void Judge(const ScanUnit& scan, const std::string& name) {
        const auto remark = [&](const std::string& words) {
            addTo(remarks_, words, name, [&](const auto& other) { return other == words; });
        };
        if (scan.horizontal.empty()) {
            ++silentScans_;
            if (automatic_ && !scan.unknown.empty())
                remark("no unit is known for " + scan.unknown + "; " + Stored());
            if (automatic_ && !scan.vertical.empty())
                remark("the unit of heights is " + text(scan.vertical.front()) +
                       " and none is named for eastings and northings; " + Stored() +
                       " for all three");
            return;
        }
        const ScanUnit::Statement& unit = scan.horizontal.front();
        addTo(named_, unit.unit, name, [&](const auto& u) { return u.IsSameAs(unit.unit); });
        const auto other = std::find_if(scan.horizontal.begin(), scan.horizontal.end(),
                                        [&](const auto& s) { return !s.unit.IsSameAs(unit.unit); });
        if (other != scan.horizontal.end())
            remark("the unit is " + text(unit) + " but also " + text(*other) +
                   "; the former is taken");
        if (automatic_)
            JudgeOwnUnit(unit, remark);
        else
            JudgeAgainstOption(unit, remark);
        if (!unit.unit.IsAngle() && !scan.vertical.empty() &&
            !scan.vertical.front().unit.IsSameAs(unit.unit))
            remark("the unit of heights is " + text(scan.vertical.front()) +
                   " and that of eastings and northings " + unit.unit.name + "; " + Stored() +
                   " for all three, and no coordinate is converted");
    }

    template <class Remark>
    void JudgeOwnUnit(const ScanUnit::Statement& unit, const Remark& remark) const {
        if (unit.unit.IsAngle())
            remark("eastings and northings are angles, in " + text(unit) + "; " + Stored() +
                   ", so convert the scan to a projected system for true lengths");
        else if (const auto code = codeOf(unit.unit); !code)
            remark("the unit is " + text(unit) + ", which has no code; " + Stored() +
                   ", so convert the scan for true lengths");
        else if (*code == choice_.code && IsShortOf(unit.unit))
            remark("the unit is " + Shortcoming(text(unit), unit.unit));
    }

    template <class Remark>
    void JudgeAgainstOption(const ScanUnit::Statement& unit, const Remark& remark) const {
        if (wantedCode_ == DrawingUnits::undefined) return;
        if (codeOf(unit.unit) != wantedCode_ ||
            (wantsSurveyFoot_ && !unit.unit.IsSameAs(surveyFoot())))
            remark("the unit is " + text(unit) + ", but --unit says " + wantedName_ + "; " +
                   Stored());
        else if (IsShortOf(unit.unit))
            remark("the unit is " + Shortcoming(text(unit), unit.unit));
    }

    /// Whether the stored unit is not quite this one.
    bool IsShortOf(const CoordinateUnit& unit) const {
        return !unit.IsSameAs({"", metresOf(choice_.code)});
    }
    std::string Shortcoming(const std::string& name, const CoordinateUnit& unit) const {
        const double off = std::abs(unit.metres - metresOf(choice_.code)) * 1000.0;
        const std::string sentence = name + ", which has no code of its own; " + Stored() + ", ";
        if (largestCoordinate_ == 0.0)
            return sentence + fixedText(off / unit.metres * 1000.0, 1) + " mm off a kilometre";
        return sentence + fixedText(off * largestCoordinate_, 1) +
               " mm off at the largest coordinate (" + DisplayText::Exact(largestCoordinate_) + ")";
    }

    /// Says which unit was taken and why, and whether the scans disagree.
    void Explain(bool isTheScansOwn) {
        const std::string unit = "the unit is " + DrawingUnits::Name(choice_.code) + ", ";
        if (named_.empty()) {
            choice_.reason = unit + "since no scan names one; --unit can name another";
            return;
        }
        std::string all;
        for (const auto& [common, scans] : named_)
            all += (all.empty() ? "" : ", ") + quoted(scans) + ": " + common.name;
        if (named_.size() > 1) {
            choice_.warnings.push_back("the scans name different units (" + all + "); " + Stored() +
                                       " for all of them, and no coordinate is converted");
            all = "but not all the same";
        }
        choice_.reason =
            unit + (isTheScansOwn ? "as the scans say (" : "since no code fits (") + all + ")";
        if (silentScans_ > 0)
            choice_.reason += "; scans that name none: " + std::to_string(silentScans_);
    }

    bool automatic_;
    const std::vector<std::string>& scans_;
    std::vector<ScanUnit> units_;
    double largestCoordinate_ = 0.0;
    Code wantedCode_ = DrawingUnits::undefined;
    bool wantsSurveyFoot_ = false;
    std::string wantedName_;
    UnitChoice choice_;
    /// The units named, with the scans that name them.
    std::vector<ScanGroup<CoordinateUnit>> named_;
    std::size_t silentScans_ = 0;
    /// What there is to say about single scans.
    std::vector<ScanGroup<std::string>> remarks_;
};

}  // namespace

UnitChoice UnitChoice::Make(const std::string& option, const std::vector<std::string>& scans) {
    return Chooser(option, scans).Choose();
}

std::string UnitChoice::Fault(const std::string& option) {
    if (option == automatic || namesSurveyFoot(option) || DrawingUnits::Parse(option)) return {};
    return "'" + option + "' is no unit; the units are " + automatic + ", us-ft, " +
           DrawingUnits::List();
}

}  // namespace vpc
