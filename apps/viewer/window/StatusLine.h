#pragma once

#include <optional>
#include <string>
#include <vector>

#include <wx/statusbr.h>
#include <glm/vec3.hpp>

#include "viewer/engine/ViewRequest.h"

namespace vpc::viewer {

/// The window's lowest line: what the tool says, the place under the cursor, how many points are
/// shown, and how long that took.
class StatusLine : public wxStatusBar {
public:
    explicit StatusLine(wxWindow* parent);

    void Say(const std::string& sentence);
    /// \param extent how large the drawing is, which tells how many digits are of use
    void ShowCursor(const std::optional<glm::dvec3>& place, double extent);
    void ShowPoints(const ViewResult& result);
    void ShowFrameTime(double milliseconds);
    std::vector<std::string> Texts() const;

private:
    enum Field { Sentence, Cursor, Points, Update, Frame, fields };

    /// A text that has not changed is not drawn again.
    void SetField(Field field, const wxString& text);
};

}  // namespace vpc::viewer
