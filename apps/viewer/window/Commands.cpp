#include "viewer/window/Commands.h"

#include <utility>

namespace vpc::viewer {

void Commands::AddMenu(const wxString& title) {
    menu_ = new wxMenu;  // the bar's
    bar_->Append(menu_, title);
}

void Commands::Add(Command command) {
    const wxItemKind kind = command.isOn ? wxITEM_CHECK : wxITEM_NORMAL;
    wxMenuItem* item = menu_->Append(wxID_ANY, command.label, command.help, kind);
    frame_.Bind(
        wxEVT_MENU,
        [this, run = command.run](wxCommandEvent&) {
            run();
            Refresh();
        },
        item->GetId());
    entries_.push_back({std::move(command), item});
}

wxMenu& Commands::AddSubmenu(const wxString& title) {
    auto* submenu = new wxMenu;  // the menu's
    menu_->AppendSubMenu(submenu, title);
    return *submenu;
}

void Commands::Attach() {
    frame_.SetMenuBar(bar_);
    Refresh();
}

void Commands::Refresh() {
    for (const Entry& entry : entries_) {
        const Command& command = entry.command;
        if (command.isEnabled) entry.item->Enable(command.isEnabled());
        if (command.isOn) entry.item->Check(command.isOn());
        if (!command.labelNow) continue;
        const wxString label = command.labelNow();
        if (label != entry.item->GetItemLabel()) entry.item->SetItemLabel(label);
    }
}

const Command* Commands::Find(const std::string& name) const {
    for (const Entry& entry : entries_)
        if (entry.command.name == name) return &entry.command;
    return nullptr;
}

}  // namespace vpc::viewer
