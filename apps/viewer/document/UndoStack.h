#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "viewer/document/Drawing.h"

namespace vpc::viewer {

/// The states that a drawing went through.
class UndoStack {
public:
    /// \param bound how many steps can be undone, 1 or more
    explicit UndoStack(Drawing drawing = {}, std::size_t bound = 100);

    const Drawing& Current() const { return states_[current_].drawing; }
    /// Makes a state the current one. What could be redone is forgotten. Nothing happens where the
    /// drawing is the same as the current one.
    /// \param label what was done, as in "Undo: move section"
    void Do(const std::string& label, Drawing drawing);
    /// False where there is nothing to undo.
    bool Undo();
    bool Redo();
    /// What Undo would undo; empty where there is nothing.
    std::string UndoLabel() const;
    std::string RedoLabel() const;
    /// Changes every state: a file was opened or closed, which is no step to be undone.
    void Amend(const std::function<void(Drawing&)>& change);

private:
    struct State {
        std::string label;  ///< of the step that led here
        Drawing drawing;
    };
    std::size_t bound_;
    std::vector<State> states_;  // at least one
    std::size_t current_ = 0;
};

}  // namespace vpc::viewer
