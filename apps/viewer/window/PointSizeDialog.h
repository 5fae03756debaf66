#pragma once

#include "viewer/document/ViewStyle.h"

class wxWindow;

namespace vpc::viewer {

/// Asks how large points are drawn. Modal. Its controls have the names "dialog/Sizing",
/// "dialog/Size", "dialog/OK" and "dialog/Cancel".
/// \param style is changed where the user wants it
/// \return whether the user wants it
bool askForPointSize(wxWindow* parent, ViewStyle& style);

}  // namespace vpc::viewer
