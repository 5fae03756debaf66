#include "viewer/panels/PalettePanel.h"

#include <algorithm>
#include <utility>

#include <wx/propgrid/propgrid.h>
#include <wx/sizer.h>
#include <wx/stattext.h>
#include <wx/wupdlock.h>

#include "viewer/document/Labels.h"
#include "viewer/panels/Text.h"

namespace vpc::viewer {

namespace {

const Property::Value firstChoice = 0LL;

wxString gridName(const Property& property) {
    return wxString::Format("%d", property.id);
}

/// A number with all its digits: coordinates have many.
class ExactNumber : public wxFloatProperty {
public:
    using wxFloatProperty::wxFloatProperty;

    wxString ValueToString(wxVariant& value, int flags) const override {
        if (value.IsNull()) return wxFloatProperty::ValueToString(value, flags);
        return fromUtf8(exactText(value.GetDouble()));
    }
};

wxPGProperty* makeLine(const Property& property) {
    const wxString label = fromUtf8(property.name);
    const wxString name = gridName(property);
    wxPGProperty* line = nullptr;  // the grid's
    if (!property.choices.empty()) {
        wxPGChoices choices;
        for (std::size_t i = 0; i < property.choices.size(); ++i)
            choices.Add(fromUtf8(property.choices[i]), static_cast<int>(i));
        line = new wxEnumProperty(label, name, choices);
    } else if (std::holds_alternative<bool>(property.value)) {
        line = new wxBoolProperty(label, name);
        line->SetAttribute(wxPG_BOOL_USE_CHECKBOX, true);
    } else if (std::holds_alternative<long long>(property.value)) {
        line = new wxIntProperty(label, name);
    } else if (std::holds_alternative<double>(property.value)) {
        line = new ExactNumber(label, name);
    } else {
        line = new wxStringProperty(label, name);
    }
    if (!property.canBeSet) line->ChangeFlag(wxPG_PROP_READONLY, true);
    return line;
}

wxVariant variantOf(const Property& property) {
    if (const auto* value = std::get_if<bool>(&property.value)) return *value;
    if (const auto* value = std::get_if<long long>(&property.value))
        return static_cast<long>(*value);
    if (const auto* value = std::get_if<double>(&property.value)) return *value;
    if (const auto* value = std::get_if<std::string>(&property.value)) return fromUtf8(*value);
    return {};
}

/// The line's value as the extension holds it.
Property::Value valueOf(const wxPGProperty& line, const Property& property) {
    const wxVariant value = line.GetValue();
    if (value.IsNull()) return {};
    if (!property.choices.empty() || std::holds_alternative<long long>(property.value))
        return static_cast<long long>(value.GetLong());
    if (std::holds_alternative<bool>(property.value)) return value.GetBool();
    if (std::holds_alternative<double>(property.value)) return value.GetDouble();
    return toUtf8(value.GetString());
}

/// Whether two properties are shown by the same kind of line.
bool isAlike(const Property& a, const Property& b) {
    return a.id == b.id && a.name == b.name && a.category == b.category && a.choices == b.choices &&
           a.canBeSet == b.canBeSet && a.value.index() == b.value.index();
}

}  // namespace

PalettePanel::PalettePanel(wxWindow* parent, Edit edit) : wxPanel(parent), edit_(std::move(edit)) {
    auto* title = new wxStaticText(this, wxID_ANY, "Properties");
    title->SetFont(title->GetFont().Bold());
    grid_ = new wxPropertyGrid(this, wxID_ANY, wxDefaultPosition, wxDefaultSize,
                               long{wxPG_SPLITTER_AUTO_CENTER} | wxBORDER_NONE);
    auto* column = new wxBoxSizer(wxVERTICAL);  // the panel's
    column->Add(title, wxSizerFlags().Border(wxALL, FromDIP(8)));
    column->Add(grid_, wxSizerFlags(1).Expand());
    SetSizer(column);
    grid_->Bind(wxEVT_PG_CHANGED, &PalettePanel::OnChanged, this);
    // By itself the grid ends an edit at Enter, and when another line or window gets the keys.
    grid_->Bind(wxEVT_CHAR_HOOK, [this](wxKeyEvent& event) {
        if (event.GetKeyCode() == WXK_TAB) grid_->CommitChangesFromEditor();
        event.Skip();
    });
}

void PalettePanel::Await(int entity) {
    if (entity == entity_) return;
    grid_->CommitChangesFromEditor();
    properties_.clear();
    Rebuild();
}

void PalettePanel::ShowProperties(int entity, const std::vector<Property>& properties) {
    Await(entity);
    entity_ = entity;
    const bool isAnew = !std::equal(properties_.begin(), properties_.end(), properties.begin(),
                                    properties.end(), isAlike);
    properties_ = properties;
    if (isAnew) Rebuild();
    ShowValues();
}

void PalettePanel::Rebuild() {
    const wxWindowUpdateLocker quiet(grid_);
    grid_->Clear();
    wxString category;
    for (const Property& property : properties_) {
        if (fromUtf8(property.category) != category) {
            category = fromUtf8(property.category);
            grid_->Append(new wxPropertyCategory(category, wxPG_LABEL));  // the grid's
        }
        grid_->Append(makeLine(property));
    }
}

void PalettePanel::ShowValues() {
    for (const Property& property : properties_) {
        wxPGProperty* line = grid_->GetProperty(gridName(property));
        if (line == nullptr) continue;
        const wxVariant value = variantOf(property);
        if (line->GetValue() != value) line->SetValue(value);
    }
    grid_->Refresh();
}

const Property* PalettePanel::Find(int id) const {
    const auto found = std::find_if(properties_.begin(), properties_.end(),
                                    [id](const Property& property) { return property.id == id; });
    return found == properties_.end() ? nullptr : &*found;
}

void PalettePanel::OnChanged(wxPropertyGridEvent& event) {
    const wxPGProperty* line = event.GetProperty();
    for (const Property& property : properties_) {
        if (gridName(property) != line->GetName()) continue;
        const PropertyEdit edit{property, valueOf(*line, property)};
        std::vector<PropertyEdit> edits;
        // The scan's colours are the first choice of both. Elevations without a scheme would look
        // the same as before.
        const Property* scheme = Find(Property::colourScheme);
        if (property.id == Property::stylization && edit.value != firstChoice &&
            scheme != nullptr && scheme->value == firstChoice && scheme->choices.size() > 1)
            edits.push_back({*scheme, 1LL});
        edits.push_back(edit);
        edit_(entity_, edits);
        return;
    }
}

std::vector<PalettePanel::Cell> PalettePanel::Cells() const {
    std::vector<Cell> cells;
    const wxRect inSight = grid_->GetClientRect();
    for (const Property& property : properties_) {
        const wxPGProperty* line = grid_->GetProperty(gridName(property));
        if (line == nullptr) continue;
        wxRect place = grid_->GetPropertyRect(line, line);
        const int split = grid_->GetSplitterPosition();
        place.x += split;
        place.width = grid_->GetClientSize().x - split;
        place.SetPosition(grid_->CalcScrolledPosition(place.GetPosition()));
        if (!inSight.Contains(place.GetPosition())) continue;
        place.SetPosition(grid_->ClientToScreen(place.GetPosition()));
        cells.push_back({"palette/" + property.name, place});
    }
    return cells;
}

}  // namespace vpc::viewer
