#include "viewer/window/StatusLine.h"

#include <algorithm>
#include <array>

#include "viewer/document/Labels.h"
#include "viewer/panels/Text.h"

namespace vpc::viewer {

StatusLine::StatusLine(wxWindow* parent) : wxStatusBar(parent, wxID_ANY) {
    const int em = GetTextExtent("0").x;
    const std::array<int, fields> widths{-1, 36 * em, 46 * em, 16 * em, 16 * em};
    SetFieldsCount(fields, widths.data());
}

void StatusLine::Say(const std::string& sentence) {
    SetField(Sentence, fromUtf8(sentence));
}

void StatusLine::ShowCursor(const std::optional<glm::dvec3>& place, double extent) {
    SetField(Cursor, place ? fromUtf8(placeText(*place, extent)) : wxString());
}

void StatusLine::ShowPoints(const ViewResult& result) {
    unsigned long long level = 0;
    unsigned long long levels = 0;
    for (const ShownEntity& entity : result.entities) {
        level = std::max(level, entity.level);
        levels = std::max(levels, entity.levels);
    }
    wxString text = grouped(result.shown) + " of " + grouped(result.inAll) + " points";
    if (levels > 0) text += wxString::Format(", level %llu, deepest %llu", level, levels - 1);
    const bool isEmpty = result.entities.empty();
    SetField(Points, isEmpty ? wxString() : text);
    SetField(Update, isEmpty ? wxString() : "update " + fixed(result.milliseconds, 0) + " ms");
    if (isEmpty) SetField(Frame, wxString());
}

void StatusLine::ShowFrameTime(double milliseconds) {
    SetField(Frame, "frame " + fixed(milliseconds, 0) + " ms");
}

std::vector<std::string> StatusLine::Texts() const {
    std::vector<std::string> texts;
    texts.reserve(fields);
    for (int field = 0; field < fields; ++field) texts.push_back(toUtf8(GetStatusText(field)));
    return texts;
}

void StatusLine::SetField(Field field, const wxString& text) {
    if (GetStatusText(field) != text) SetStatusText(text, field);
}

}  // namespace vpc::viewer
