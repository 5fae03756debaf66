#pragma once

#include <string>

#include "viewer/camera/ViewCamera.h"
#include "viewer/document/Drawing.h"
#include "viewer/document/Refusal.h"

namespace vpc::viewer {

/// What is saved and opened again: the drawing's files and all that is done to them, and the view.
struct Session {
    Drawing drawing;
    ViewCamera camera;

    bool operator==(const Session&) const = default;
};

/// A session cannot be read or written; `what()` is a sentence for the user.
class SessionError : public Refusal {
public:
    using Refusal::Refusal;
};

/// JSON, with every number as exact as it is. Tree files below the session file's folder are named
/// relative to it, so that the folder may be moved as a whole.
/// \param sessionFile UTF-8, where the text will be saved
std::string sessionText(const Session& session, const std::string& sessionFile);
/// The session that a text holds. Entities are numbered from 1 in their order; files are absolute.
/// Unknown keys are ignored and missing ones left at their defaults.
/// \throws SessionError where the text is no session, or one whose values cannot be
Session sessionFromText(const std::string& text, const std::string& sessionFile);

}  // namespace vpc::viewer
