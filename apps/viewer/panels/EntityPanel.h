#pragma once

#include <functional>
#include <vector>

#include "viewer/document/Drawing.h"
#include "viewer/panels/SidePanel.h"

class wxCheckBox;

namespace vpc::viewer {

/// The files of the drawing: shows and hides them, closes them, and chooses the one that the
/// palette shows. Names for tests: "entity/ID/visible", "entity/ID/name", "entity/ID/close".
class EntityPanel : public SidePanel {
public:
    struct Actions {
        std::function<void(int entity, bool isVisible)> show;
        std::function<void(int entity)> choose;
        std::function<void(int entity)> close;
        /// What is written small below the name.
        std::function<wxString(int entity)> describe;
    };

    EntityPanel(wxWindow* parent, Actions actions);

    void ShowEntities(const Drawing& drawing);
    /// Brings the small texts up to date.
    void ShowDescriptions();
    /// 0 where there is none.
    int Chosen() const { return chosen_; }
    void Choose(int entity);

private:
    struct Row {
        Entity entity;
        wxPanel* panel;
        wxCheckBox* visible;
        wxStaticText* description;
    };

    void AddRow(const Entity& entity);
    void PaintChosen();

    Actions actions_;
    std::vector<Row> rows_;
    int chosen_ = 0;
};

}  // namespace vpc::viewer
