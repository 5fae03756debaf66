#include "viewer/window/Workspace.h"

#include <algorithm>
#include <filesystem>

#include "viewer/document/SessionFile.h"

namespace vpc::viewer {

namespace {

template <class Value>
void takeChange(Value& value, const Value& before, const Value& after) {
    if (after != before) value = after;
}

/// Makes the changes from one state of the entity to another. What else has changed since then
/// stays.
void takeChanges(Entity& entity, const Entity& before, const Entity& after) {
    takeChange(entity.name, before.name, after.name);
    for (int i = 0; i < 3; ++i)
        takeChange(entity.placement.location[i], before.placement.location[i],
                   after.placement.location[i]);
    takeChange(entity.placement.rotation, before.placement.rotation, after.placement.rotation);
    takeChange(entity.placement.scale, before.placement.scale, after.placement.scale);
    takeChange(entity.stylization, before.stylization, after.stylization);
    takeChange(entity.colourScheme, before.colourScheme, after.colourScheme);
    takeChange(entity.cropped, before.cropped, after.cropped);
    takeChange(entity.locked, before.locked, after.locked);
}

}  // namespace

Workspace::Workspace(Engine& engine, WorkspaceListener& listener)
    : engine_(engine), listener_(listener) {
}

const EntityFacts* Workspace::FactsOf(int entity) const {
    const auto found = facts_.find(entity);
    return found == facts_.end() ? nullptr : &found->second;
}

Box Workspace::ShownBox() const {
    Box box;
    for (const Entity& entity : Shown().entities) {
        const EntityFacts* facts = FactsOf(entity.id);
        if (!entity.visible || facts == nullptr || facts->box.IsEmpty()) continue;
        for (const glm::dvec3& corner : facts->box.Corners())
            box.Add(entity.placement.ToDrawing(corner));
    }
    return box;
}

void Workspace::OpenTree(const std::string& file) {
    Entity entity;
    std::error_code error;
    const std::filesystem::path path = std::filesystem::absolute(file, error).lexically_normal();
    entity.id = ++lastId_;
    entity.file = path.string();
    entity.name = path.stem().string();
    Load(entity, false);
}

void Workspace::Load(const Entity& entity, bool asGiven) {
    ++opening_;
    engine_.Open(entity, asGiven, Kept().unit,
                 [this, asGiven, isFirst = Kept().entities.empty(),
                  drawing = drawing_](const Engine::Opened& opened) {
                     --opening_;
                     if (drawing == drawing_)
                         OnLoaded(opened, isFirst, asGiven);
                     else
                         engine_.Close(opened.entity.id);  // a session has come in its place
                 });
}

void Workspace::OnLoaded(const Engine::Opened& opened, bool isFirst, bool ofSession) {
    if (!opened.problem.empty()) {
        listener_.OnProblem(opened.problem);
        return;
    }
    if (ofSession && Kept().Find(opened.entity.id) == nullptr) return;  // closed meanwhile
    EntityFacts& facts = facts_[opened.entity.id];
    facts.box = opened.box;
    facts.points = opened.points;
    facts.unit = opened.unit;
    facts.shown.inAll = opened.points;
    undo_.Amend([&opened, ofSession](Drawing& drawing) {
        if (!ofSession) drawing.entities.push_back(opened.entity);
        drawing.unit = opened.drawingUnit;
    });
    if (!ofSession) {
        preview_.reset();
        listener_.OnOpened(opened.entity, isFirst);
    }
    listener_.OnDrawingChanged();
}

void Workspace::CloseEntity(int entity) {
    engine_.Close(entity);
    facts_.erase(entity);
    preview_.reset();
    undo_.Amend([entity](Drawing& drawing) {
        std::erase_if(drawing.entities, [entity](const Entity& one) { return one.id == entity; });
        if (drawing.entities.empty()) drawing.unit.clear();
    });
    listener_.OnDrawingChanged();
}

void Workspace::CloseAll() {
    for (const Entity& entity : Kept().entities) engine_.Close(entity.id);
    facts_.clear();
    preview_.reset();
    ++drawing_;
}

void Workspace::OpenSession(const std::string& file) {
    Session session;
    try {
        session = openSession(file);
    } catch (const SessionError& error) {
        listener_.OnProblem(error.what());
        return;
    }
    CloseAll();
    // In the drawing at once, so that a file that cannot be opened today stays in the session.
    for (Entity& entity : session.drawing.entities) entity.id = ++lastId_;
    undo_ = UndoStack(session.drawing);
    for (const Entity& entity : session.drawing.entities) Load(entity, true);
    listener_.OnSessionOpened(session, file);
    listener_.OnStyleChanged();
    listener_.OnDrawingChanged();
}

bool Workspace::SaveSession(const std::string& file, const ViewCamera& camera) {
    if (IsOpening()) {
        listener_.OnProblem("Files are still being opened; save the session when that is done.");
        return false;
    }
    try {
        saveSession({Kept(), camera}, file);
        return true;
    } catch (const SessionError& error) {
        listener_.OnProblem(error.what());
        return false;
    }
}

Drawing Workspace::WithCuts(const Drawing& drawing) const {
    Drawing result = Kept();
    result.sections = drawing.sections;
    result.clips = drawing.clips;
    return result;
}

void Workspace::Preview(const Drawing& drawing) {
    const Drawing preview = WithCuts(drawing);
    if (preview == Kept()) {
        EndPreview();
        return;
    }
    preview_ = preview;
    listener_.OnPreview();
}

void Workspace::EndPreview() {
    if (!preview_) return;
    preview_.reset();
    listener_.OnDrawingChanged();
}

void Workspace::Change(const std::string& label, const Drawing& drawing) {
    Do(label, WithCuts(drawing));
}

void Workspace::Do(const std::string& label, const Drawing& drawing) {
    preview_.reset();
    undo_.Do(label, drawing);
    listener_.OnDrawingChanged();
}

void Workspace::ShowEntity(int entity, bool isVisible) {
    Drawing drawing = Kept();
    Entity* found = drawing.Find(entity);
    if (found == nullptr) return;
    found->visible = isVisible;
    Do((isVisible ? "show " : "hide ") + found->name, drawing);
}

void Workspace::SetStyle(const ViewStyle& style) {
    undo_.Amend([&style](Drawing& drawing) { drawing.style = style; });
    if (preview_) preview_->style = style;
    listener_.OnStyleChanged();
}

void Workspace::SetPointBudget(unsigned long long budget) {
    undo_.Amend([budget](Drawing& drawing) { drawing.pointBudget = budget; });
    if (preview_) preview_->pointBudget = budget;
    listener_.OnDrawingChanged();
}

void Workspace::SetProperties(int id, const std::vector<PropertyEdit>& edits) {
    const Entity* const entity = Kept().Find(id);
    if (entity == nullptr || edits.empty()) return;
    std::vector<PropertyValue> values;
    values.reserve(edits.size());
    for (const PropertyEdit& edit : edits) values.push_back({edit.property.id, edit.value});
    engine_.SetProperties(*entity, values,
                          [this, before = *entity, label = "change " + edits.back().property.name](
                              const Entity& after, const Engine::Problem& problem) {
                              if (!problem.empty()) listener_.OnProblem(problem);
                              TakeProperties(before, after, label);
                          });
}

void Workspace::TakeProperties(const Entity& before, const Entity& after,
                               const std::string& label) {
    Drawing drawing = Kept();
    Entity* const entity = drawing.Find(before.id);
    if (entity == nullptr) return;  // closed meanwhile
    takeChanges(*entity, before, after);
    Do(label, drawing);
}

void Workspace::Undo() {
    preview_.reset();
    if (undo_.Undo()) listener_.OnDrawingChanged();
}

void Workspace::Redo() {
    preview_.reset();
    if (undo_.Redo()) listener_.OnDrawingChanged();
}

void Workspace::TakeFacts(const ViewResult& result) {
    for (const ShownEntity& shown : result.entities) {
        const auto found = facts_.find(shown.id);
        if (found != facts_.end()) found->second.shown = shown;
    }
}

}  // namespace vpc::viewer
