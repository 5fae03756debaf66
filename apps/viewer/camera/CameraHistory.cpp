#include "viewer/camera/CameraHistory.h"

#include <algorithm>

#include "viewer/camera/CameraGuard.h"

namespace vpc::viewer {

CameraHistory::CameraHistory(std::size_t bound) : bound_(std::max<std::size_t>(bound, 2)) {
}

void CameraHistory::Keep(const ViewCamera& camera) {
    if (!isSound(camera) || (!views_.empty() && views_[current_] == camera)) return;
    if (!views_.empty()) views_.resize(current_ + 1);
    views_.push_back(camera);
    if (views_.size() > bound_) views_.erase(views_.begin());
    current_ = views_.size() - 1;
}

std::optional<ViewCamera> CameraHistory::Back() {
    if (!CanGoBack()) return std::nullopt;
    return views_[--current_];
}

std::optional<ViewCamera> CameraHistory::Forward() {
    if (!CanGoForward()) return std::nullopt;
    return views_[++current_];
}

}  // namespace vpc::viewer
