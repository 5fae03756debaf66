#pragma once

#include <wx/button.h>
#include <wx/scrolwin.h>
#include <wx/sizer.h>
#include <wx/stattext.h>

namespace vpc::viewer {

/// A part of the window's side: a heading with a list under it.
class SidePanel : public wxPanel {
public:
    SidePanel(wxWindow* parent, const wxString& heading);

protected:
    /// Where rows go; it scrolls.
    wxScrolledWindow& Rows() { return *rows_; }
    wxSizer& RowSizer() { return *rows_->GetSizer(); }
    /// Removes all rows. Called before rows are made anew.
    void ClearRows();
    /// Called after rows were made.
    void ShowRows();
    /// A flat button with a sign on it.
    static wxButton* MakeSmallButton(wxWindow* parent, const wxString& sign, const wxString& help,
                                     const wxString& name);
    /// A line in grey: what stands there as long as there are no rows.
    void AddHint(const wxString& text);

private:
    wxScrolledWindow* rows_;
};

}  // namespace vpc::viewer
