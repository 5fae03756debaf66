#pragma once

#include <functional>
#include <string>
#include <vector>

#include <wx/panel.h>

#include "viewer/panels/PropertyEdit.h"

class wxPropertyGrid;
class wxPropertyGridEvent;

namespace vpc::viewer {

/// The property palette of one entity, with what the plug-in's extension tells and takes. The cells
/// have names for tests: "palette/" and the property's name.
class PalettePanel : public wxPanel {
public:
    /// Gets what belongs to one step; what the user has edited is last.
    using Edit = std::function<void(int entity, const std::vector<PropertyEdit>& edits)>;
    struct Cell {
        std::string name;
        wxRect place;  ///< on the screen
    };

    PalettePanel(wxWindow* parent, Edit edit);

    /// Ends what is being edited, where that is another entity, and is empty until the properties
    /// are shown.
    void Await(int entity);
    /// Empty where there is nothing to show.
    void ShowProperties(int entity, const std::vector<Property>& properties);
    /// The values that are in sight.
    std::vector<Cell> Cells() const;

private:
    void Rebuild();
    void ShowValues();
    /// Null where the palette has none.
    const Property* Find(int id) const;
    void OnChanged(wxPropertyGridEvent& event);

    Edit edit_;
    /// That of the properties; 0 where there is none.
    int entity_ = 0;
    std::vector<Property> properties_;
    wxPropertyGrid* grid_;
};

}  // namespace vpc::viewer
