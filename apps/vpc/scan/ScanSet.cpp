#include "vpc/scan/ScanSet.h"

#include <algorithm>
#include <filesystem>

#include "core/util/FileTools.h"
#include "vpc/common/Command.h"

namespace vpc {

namespace {

using Kind = ScanFault::Kind;

std::string sentence(const ScanFile& scan) {
    const ScanFault& fault = *scan.Fault();
    return "'" + scan.Name() + "' " + fault.Problem() +
           (fault.Remedy().empty() ? "" : "; " + fault.Remedy());
}

const char* nameOf(VpcDataFormat format) {
    return format == DataFormat_LAS ? "LAS" : format == DataFormat_PTX ? "PTX" : "PTS";
}

}  // namespace

ScanSet::ScanSet(const std::vector<std::string>& files, Rules rules) : rules_(rules) {
    scans_.reserve(files.size());
    for (const std::string& file : files) scans_.emplace_back(file, rules.text);
    RequireOneFormat();
}

void ScanSet::RequireOneFormat() {
    const ScanFile* first = nullptr;
    for (ScanFile& scan : scans_) {
        if (scan.Fault()) continue;
        if (first == nullptr) first = &scan;
        if (scan.Format() != first->Format())
            scan.SetFault({Kind::Unusable,
                           std::string("is of another format (") + nameOf(scan.Format()) +
                               ") than '" + first->Name() + "' (" + nameOf(first->Format()) + ")",
                           "prepare scans of one format at a time"});
    }
}

CheckedScans ScanSet::Checked() const {
    CheckedScans checked;
    for (const ScanFile& scan : scans_) {
        if (scan.Fault()) continue;
        checked.format = scan.Format();
        checked.points += scan.Points();
        checked.copyBytes += scan.CopyBytes();
    }
    return checked;
}

std::vector<std::string> ScanSet::Names() const {
    std::vector<std::string> names;
    for (const ScanFile& scan : scans_) names.push_back(scan.Name());
    return names;
}

void ScanSet::Check(const std::string& workFolder, const Progress& progress) {
    unsigned long long inAll = 0;
    for (const ScanFile& scan : scans_)
        if (!scan.Fault() && scan.IsText()) inAll += scan.Bytes();
    unsigned long long before = 0;
    for (std::size_t i = 0; i < scans_.size(); ++i) {
        ScanFile& scan = scans_[i];
        const bool isRead = !scan.Fault() && scan.IsText();
        scan.Check(workFolder + "scan-" + std::to_string(i + 1),
                   [&](unsigned long long bytes) { progress(before + bytes, inAll); });
        if (isRead) before += scan.Bytes();
    }
}

bool ScanSet::MayLeaveOut(const ScanFault& fault) const {
    return rules_.skipBad || (rules_.text.allowIncomplete && fault.Which() == Kind::Empty);
}

void ScanSet::Settle(const std::string& unchanged) {
    const auto isBad = [](const ScanFile& scan) { return scan.Fault().has_value(); };
    const bool mayLeaveOut = std::all_of(scans_.begin(), scans_.end(), [&](const ScanFile& scan) {
        return !scan.Fault() || MayLeaveOut(*scan.Fault());
    });
    if (!mayLeaveOut || std::all_of(scans_.begin(), scans_.end(), isBad)) Refuse(unchanged);
    for (const ScanFile& scan : scans_)
        if (isBad(scan)) leftOut_.push_back("left out: " + sentence(scan));
    const std::size_t given = scans_.size();
    scans_.erase(std::remove_if(scans_.begin(), scans_.end(), isBad), scans_.end());
    if (!leftOut_.empty())
        leftOut_.push_back("the points' scan indices count the scans that are read (" +
                           std::to_string(scans_.size()) + "), not those that were given (" +
                           std::to_string(given) + ")");
}

void ScanSet::Refuse(const std::string& unchanged) const {
    std::vector<std::string> sentences;
    for (const ScanFile& scan : scans_)
        if (scan.Fault()) sentences.push_back(sentence(scan));
    const std::string advice = Advice();
    if (sentences.size() == 1)
        throw CommandError(sentences.front() + (advice.empty() ? "" : "; " + advice) + unchanged);
    std::string text = std::to_string(sentences.size()) + " of " + std::to_string(scans_.size()) +
                       " scans cannot be used";
    for (const std::string& line : sentences) text += "\n  " + line;
    throw CommandError(text + "\n" + (advice.empty() ? "no scan is left" : advice) + unchanged);
}

/// What the program's options can do about the faults.
std::string ScanSet::Advice() const {
    const auto any = [&](const auto& test) {
        return std::any_of(scans_.begin(), scans_.end(), test);
    };
    const bool othersAreGood = any([](const ScanFile& scan) { return !scan.Fault(); });
    const bool canBeTaken = !rules_.text.allowIncomplete && any([](const ScanFile& scan) {
        return scan.Fault() && scan.Fault()->Which() == Kind::Incomplete;
    });
    std::string advice;
    if (canBeTaken) advice = "--allow-incomplete takes the points that are there";
    if (othersAreGood && !rules_.skipBad)
        advice += std::string(advice.empty() ? "" : " and ") + "--skip-bad leaves out such scans";
    return advice;
}

std::vector<wxString> ScanSet::Sources() const {
    std::vector<wxString> sources;
    for (const ScanFile& scan : scans_) sources.push_back(FileTools::FromNativePath(scan.Source()));
    return sources;
}

wxString ScanSet::InUsersNames(wxString message) const {
    for (const ScanFile& scan : scans_)
        message.Replace(FileTools::FromNativePath(scan.Source()),
                        FileTools::FromNativePath(scan.Name()));
    return message;
}

std::vector<std::string> ScanSet::Notes() const {
    std::vector<std::string> notes;
    for (const ScanFile& scan : scans_)
        notes.insert(notes.end(), scan.Notes().begin(), scan.Notes().end());
    return notes;
}

std::vector<std::string> ScanSet::Warnings() const {
    std::vector<std::string> warnings = leftOut_;
    for (const ScanFile& scan : scans_)
        warnings.insert(warnings.end(), scan.Warnings().begin(), scan.Warnings().end());
    return warnings;
}

}  // namespace vpc
