#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "viewer/document/Session.h"
#include "viewer/document/UndoStack.h"
#include "viewer/engine/Engine.h"
#include "viewer/panels/PropertyEdit.h"

namespace vpc::viewer {

/// What is told about an entity beside what the drawing holds.
struct EntityFacts {
    /// Around its points, in their own frame.
    Box box;
    unsigned long long points = 0;
    /// Of the points' coordinates.
    std::string unit;
    /// Of the last update.
    ShownEntity shown;
};

/// Who wants to know what becomes of the drawing.
class WorkspaceListener {
public:
    virtual ~WorkspaceListener() = default;

    /// Entities, sections, clips or their values have changed.
    virtual void OnDrawingChanged() = 0;
    /// A drag shows a state of the drawing.
    virtual void OnPreview() = 0;
    /// How points are drawn has changed, and not which ones.
    virtual void OnStyleChanged() = 0;
    /// A file that no session brought.
    /// \param isFirst whether nothing was open when it was asked for: of files that are opened
    ///                together, all are the first
    virtual void OnOpened(const Entity& entity, bool isFirst) = 0;
    /// The drawing is a session's, whose files are being opened.
    virtual void OnSessionOpened(const Session& session, const std::string& file) = 0;
    /// A sentence for the user.
    virtual void OnProblem(const std::string& sentence) = 0;
};

/// The drawing that the window shows: its files, its changes, and how they are undone.
class Workspace {
public:
    Workspace(Engine& engine, WorkspaceListener& listener);
    Workspace(const Workspace&) = delete;
    Workspace& operator=(const Workspace&) = delete;

    /// As it is shown.
    const Drawing& Shown() const { return preview_ ? *preview_ : undo_.Current(); }
    /// Without the drag that goes on.
    const Drawing& Kept() const { return undo_.Current(); }
    /// Null where the entity's file is not open, yet or at all.
    const EntityFacts* FactsOf(int entity) const;
    /// Around all visible entities.
    Box ShownBox() const;

    void OpenTree(const std::string& file);
    void CloseEntity(int entity);
    /// Puts a session in the place of all that is open.
    void OpenSession(const std::string& file);
    /// Not while files are being opened, which would be missing. \return whether it was saved
    bool SaveSession(const std::string& file, const ViewCamera& camera);
    /// Whether files are being opened.
    bool IsOpening() const { return opening_ > 0; }

    /// Shows other sections and clips, while a drag goes on. The rest of a drawing that is handed
    /// over may be older than what is kept, and does not count.
    void Preview(const Drawing& drawing);
    void EndPreview();
    /// Changes sections and clips, as a step that can be undone; the rest does not count here,
    /// either.
    void Change(const std::string& label, const Drawing& drawing);
    void ShowEntity(int entity, bool isVisible);
    void SetStyle(const ViewStyle& style);
    void SetPointBudget(unsigned long long budget);
    /// One step, whatever the number of edits; it is called after the last one.
    void SetProperties(int id, const std::vector<PropertyEdit>& edits);
    void Undo();
    void Redo();
    std::string UndoLabel() const { return undo_.UndoLabel(); }
    std::string RedoLabel() const { return undo_.RedoLabel(); }

    /// What the engine has found for a view.
    void TakeFacts(const ViewResult& result);

private:
    /// What is kept, with the sections and clips of another drawing.
    Drawing WithCuts(const Drawing& drawing) const;
    void Do(const std::string& label, const Drawing& drawing);
    void TakeProperties(const Entity& before, const Entity& after, const std::string& label);
    void Load(const Entity& entity, bool asGiven);
    void OnLoaded(const Engine::Opened& opened, bool isFirst, bool ofSession);
    void CloseAll();

    Engine& engine_;
    WorkspaceListener& listener_;
    UndoStack undo_;
    std::optional<Drawing> preview_;
    std::map<int, EntityFacts> facts_;
    int lastId_ = 0;
    /// Grows with every session that is opened.
    int drawing_ = 0;
    int opening_ = 0;
};

}  // namespace vpc::viewer
