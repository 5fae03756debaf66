#pragma once

class wxWindow;

namespace vpc::viewer {

/// Shows what mouse, touchpad and keys do. Modal.
void showHelpPage(wxWindow* parent);
void showAbout(wxWindow* parent);

}  // namespace vpc::viewer
