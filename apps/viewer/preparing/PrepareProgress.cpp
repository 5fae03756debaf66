#include "viewer/preparing/PrepareProgress.h"

#include <algorithm>
#include <array>

#include <nlohmann/json.hpp>

#include "viewer/document/Labels.h"

namespace vpc::viewer {

namespace {

using Json = nlohmann::json;

constexpr std::array<std::string_view, 2> programNames = {"vpc prepare: ", "vpc: "};
constexpr std::string_view warningMark = "warning: ";
/// A program that writes no ends of lines is not ours; what it says is not kept without end.
constexpr std::size_t longestLine = 1U << 24U;
constexpr std::size_t longestText = 1U << 16U;
constexpr std::size_t mostWarnings = 1000;

/// What is no UTF-8 in a text becomes a replacement character.
std::string asUtf8(const std::string& text) {
    const std::string quoted = Json(text).dump(-1, ' ', false, Json::error_handler_t::replace);
    return Json::parse(quoted).get<std::string>();
}

/// Hands every whole line of `pending` with `bytes` after it to `take`; the rest stays.
template <class Take>
void takeLines(std::string& pending, std::string_view bytes, const Take& take) {
    pending += bytes;
    std::size_t start = 0;
    for (std::size_t end; (end = pending.find('\n', start)) != std::string::npos; start = end + 1)
        take(pending.substr(start, end - start));
    pending.erase(0, start);
    if (pending.size() > longestLine) pending.clear();
}

double numberIn(const Json& line, const char* key) {
    const auto value = line.find(key);
    return value != line.end() && value->is_number() ? value->get<double>() : 0.0;
}

unsigned long long countIn(const Json& line, const char* key) {
    const auto value = line.find(key);
    return value != line.end() && value->is_number_unsigned() ? value->get<unsigned long long>()
                                                              : 0;
}

std::string textIn(const Json& line, const char* key) {
    const auto value = line.find(key);
    return value != line.end() && value->is_string() ? value->get<std::string>() : std::string();
}

/// A count with at most one decimal and the thousands' unit: "3.2 M".
std::string shortCount(double count) {
    constexpr std::array<const char*, 4> units = {"", " k", " M", " G"};
    std::size_t unit = 0;
    while (count >= 1000.0 && unit + 1 < units.size()) {
        count /= 1000.0;
        ++unit;
    }
    return decimalText(count, unit == 0 || count >= 100.0 ? 0 : 1) + units[unit];
}

std::string spanText(double seconds) {
    constexpr double longestSpan = 1e8;
    const auto whole = static_cast<unsigned long long>(std::clamp(seconds, 0.0, longestSpan));
    if (whole < 60) return std::to_string(whole) + " s";
    if (whole < 3600)
        return std::to_string(whole / 60) + " min " + std::to_string(whole % 60) + " s";
    return std::to_string(whole / 3600) + " h " + std::to_string(whole / 60 % 60) + " min";
}

}  // namespace

void PrepareProgress::TakeOutput(std::string_view bytes) {
    takeLines(output_, bytes, [&](const std::string& line) { TakeOutputLine(line); });
}

void PrepareProgress::TakeErrors(std::string_view bytes) {
    takeLines(errors_, bytes, [&](const std::string& line) { TakeErrorLine(asUtf8(line)); });
}

void PrepareProgress::Finish() {
    if (!output_.empty()) TakeOutput("\n");
    if (!errors_.empty()) TakeErrors("\n");
}

void PrepareProgress::TakeOutputLine(const std::string& line) {
    const Json told = Json::parse(line, nullptr, false);
    if (!told.is_object()) return;
    if (told.contains("output")) {
        summary_ = {countIn(told, "points"), countIn(told, "bytes"), numberIn(told, "seconds"),
                    textIn(told, "unit")};
        share_ = 1.0;
        return;
    }
    if (!told.contains("stage")) return;
    stage_ = textIn(told, "stage");
    share_ = std::clamp(numberIn(told, "share"), 0.0, 1.0);
    perSecond_ = std::max(numberIn(told, "perSecond"), 0.0);
    countsBytes_ = told.contains("bytes");
    secondsLeft_.reset();
    if (told.contains("secondsLeft")) secondsLeft_ = std::max(numberIn(told, "secondsLeft"), 0.0);
}

void PrepareProgress::TakeErrorLine(const std::string& line) {
    const auto* const name =
        std::find_if(programNames.begin(), programNames.end(),
                     [&](std::string_view start) { return line.starts_with(start); });
    if (name == programNames.end()) {
        // A text of several lines goes on.
        std::string& text = inWarning_ ? warnings_.back() : lastSentence_;
        if (text.size() + line.size() <= longestText) text += (text.empty() ? "" : "\n") + line;
        return;
    }
    std::string text = line.substr(name->size());
    inWarning_ = text.starts_with(warningMark);
    if (!inWarning_)
        lastSentence_ = std::move(text);
    else if (warnings_.size() < mostWarnings)
        warnings_.push_back(text.substr(warningMark.size()));
}

std::string PrepareProgress::Words() const {
    std::string words = stage_;
    if (perSecond_ > 0.0)
        words += ", " + shortCount(perSecond_) + (countsBytes_ ? "B/s" : " points/s");
    if (secondsLeft_) words += ", " + spanText(*secondsLeft_) + " left";
    return words;
}

}  // namespace vpc::viewer
