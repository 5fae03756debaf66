#include "viewer/document/UndoStack.h"

#include <algorithm>
#include <utility>

namespace vpc::viewer {

UndoStack::UndoStack(Drawing drawing, std::size_t bound)
    : bound_(std::max<std::size_t>(bound, 1)), states_{{"", std::move(drawing)}} {
}

void UndoStack::Do(const std::string& label, Drawing drawing) {
    if (drawing == Current()) return;
    states_.resize(current_ + 1);
    states_.push_back({label, std::move(drawing)});
    if (states_.size() > bound_ + 1) states_.erase(states_.begin());
    current_ = states_.size() - 1;
}

bool UndoStack::Undo() {
    if (current_ == 0) return false;
    --current_;
    return true;
}

bool UndoStack::Redo() {
    if (current_ + 1 == states_.size()) return false;
    ++current_;
    return true;
}

std::string UndoStack::UndoLabel() const {
    return current_ > 0 ? states_[current_].label : std::string();
}

std::string UndoStack::RedoLabel() const {
    return current_ + 1 < states_.size() ? states_[current_ + 1].label : std::string();
}

void UndoStack::Amend(const std::function<void(Drawing&)>& change) {
    for (State& state : states_) change(state.drawing);
}

}  // namespace vpc::viewer
