#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "viewer/camera/ViewCamera.h"

namespace vpc::viewer {

/// The views that the user can go back to.
class CameraHistory {
public:
    /// \param bound how many views are remembered, 2 or more; the oldest are forgotten
    explicit CameraHistory(std::size_t bound = 100);

    /// Remembers a view as the current one. Nothing happens where it is the current one already, or
    /// is not sound; what Forward would have shown is forgotten otherwise.
    void Keep(const ViewCamera& camera);
    bool CanGoBack() const { return current_ > 0; }
    bool CanGoForward() const { return current_ + 1 < views_.size(); }
    /// The view before the current one, which becomes the current one; nothing where there is none.
    std::optional<ViewCamera> Back();
    std::optional<ViewCamera> Forward();

private:
    std::size_t bound_;
    std::vector<ViewCamera> views_;
    std::size_t current_ = 0;
};

}  // namespace vpc::viewer
