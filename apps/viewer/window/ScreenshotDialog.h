#pragma once

#include <optional>

#include "draw/ImageSize.h"

class wxWindow;

namespace vpc::viewer {

/// Asks how large a picture is to be. Modal. Its controls have the names "dialog/Width",
/// "dialog/Height", "dialog/Save" and "dialog/Cancel".
/// \param proposed the window's picture
/// \param largest  how wide and how high it may be
/// \return nothing where the user cancels
std::optional<draw::ImageSize> askForPictureSize(wxWindow* parent, const draw::ImageSize& proposed,
                                                 int largest);

}  // namespace vpc::viewer
