#pragma once

#include <deque>
#include <functional>
#include <string>
#include <vector>

#include <wx/frame.h>
#include <wx/menu.h>

namespace vpc::viewer {

/// Something that the user can have done, from a menu or a button.
struct Command {
    /// Names it for buttons and tests; empty for one that has no button.
    std::string name;
    /// With its key behind a tab.
    wxString label;
    wxString help;
    std::function<void()> run;
    /// Null: always.
    std::function<bool()> isEnabled;
    /// Null where it is nothing that is on or off.
    std::function<bool()> isOn;
    /// Null where the label does not change.
    std::function<wxString()> labelNow;
};

/// All commands, and the menus that hold them.
class Commands {
public:
    explicit Commands(wxFrame& frame) : frame_(frame) {}
    Commands(const Commands&) = delete;
    Commands& operator=(const Commands&) = delete;

    /// Begins a menu; what is added then stands in it.
    void AddMenu(const wxString& title);
    void Add(Command command);
    void AddSeparator() { menu_->AppendSeparator(); }
    /// A menu in the menu; the caller fills it.
    wxMenu& AddSubmenu(const wxString& title);
    /// Ends the table: the frame gets its menu bar.
    void Attach();
    /// Brings checks, labels and what is greyed up to date.
    void Refresh();
    /// Null where there is none.
    const Command* Find(const std::string& name) const;

private:
    struct Entry {
        Command command;
        wxMenuItem* item = nullptr;
    };

    wxFrame& frame_;
    /// Becomes the frame's.
    wxMenuBar* bar_ = new wxMenuBar;
    wxMenu* menu_ = nullptr;
    /// Stays where it is while it grows: buttons keep pointers to commands.
    std::deque<Entry> entries_;
};

}  // namespace vpc::viewer
