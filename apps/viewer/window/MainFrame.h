#pragma once

#include <memory>
#include <string>
#include <vector>

#include <wx/frame.h>
#include <wx/panel.h>

#include "viewer/document/SectionMaker.h"
#include "viewer/preparing/PrepareQueue.h"
#include "viewer/window/CommandLine.h"
#include "viewer/window/Commands.h"
#include "viewer/window/Preferences.h"
#include "viewer/window/ViewControl.h"
#include "viewer/window/ViewPicture.h"

class wxSplitterWindow;

namespace vpc::viewer {

class BudgetPanel;
class CutsPanel;
class EntityPanel;
class MessageBar;
class PalettePanel;
class PreparePanel;
class RecentFiles;
class Report;
class StatusLine;
class ToolStrip;

/// The program's window: brings together the drawing, the view and the panels.
class MainFrame : public wxFrame, public WorkspaceListener {
public:
    explicit MainFrame(const CommandLine& commandLine);
    ~MainFrame() override;

    /// Opens what the program was started with.
    void Start();
    /// Has the report written as soon as nothing is under way.
    void AskForReport();
    /// Whether nothing is under way that would change what is shown.
    bool IsIdle() const;

    /// Tree files, sessions and scans, each as it is meant to be.
    void OpenFiles(const std::vector<std::string>& files);
    void PrepareScans(const std::vector<std::string>& scans);
    void SaveSession(const std::string& file);
    void TakeScreenshot(const std::string& file, const draw::ImageSize& size);
    void Tell(const std::string& sentence);
    void UseTool(ToolKind kind) { control_.UseTool(kind); }
    void SetStyle(const ViewStyle& style);
    int LargestPictureSide() const { return frames_.Renderer().LargestSide(); }
    draw::ImageSize PictureSize() const { return view_->PictureSize(); }
    /// Adds a plane across an axis and goes on with moving it.
    void AddSection(Axis axis);

    Workspace& GetWorkspace() { return workspace_; }
    ViewControl& Control() { return control_; }
    Preferences& GetPreferences() { return preferences_; }
    const std::string& SessionFile() const { return sessionFile_; }

private:
    friend class Report;

    void BuildWindow();
    wxWindow* BuildSide();
    void PlaceOnScreen();
    Overlay OverlayNow() const;
    ViewRequest RequestNow() const;
    void OnPoints(draw::Image picture, const ViewCamera& camera);
    void OnUpdated(const ViewResult& result, const std::string& problem);
    /// The plug-in is missing: nothing can be opened, and nothing that was asked for is answered.
    void OnEngineFailed(const Engine::Problem& problem);
    void ShowEmpty();
    void ShowTitle();
    void ShowProperties();
    void ShowCursor();
    wxString Describe(int entity) const;
    void ShowState();
    void OnClosing(wxCloseEvent& event);

    void OnDrawingChanged() override;
    void OnPreview() override;
    void OnStyleChanged() override;
    void OnOpened(const Entity& entity, bool isFirst) override;
    void OnSessionOpened(const Session& session, const std::string& file) override;
    void OnProblem(const std::string& sentence) override;

    const CommandLine commandLine_;
    Preferences preferences_;
    // wxWidgets deletes windows with the one that they are in.
    wxSplitterWindow* splitter_;
    wxPanel* middle_;
    ViewPanel* view_;
    MessageBar* messages_ = nullptr;
    StatusLine* status_ = nullptr;
    ToolStrip* tools_ = nullptr;
    EntityPanel* entities_ = nullptr;
    PalettePanel* palette_ = nullptr;
    CutsPanel* cuts_ = nullptr;
    BudgetPanel* budget_ = nullptr;
    PreparePanel* jobs_ = nullptr;

    /// Calls from the engine's thread wait here.
    wxEvtHandler mailbox_;
    /// Why another renderer than the wanted one draws.
    std::string rendererProblem_;
    /// Stays longer than the engine, which writes to the renderer's memory.
    FrameLoop frames_;
    Engine engine_;
    Workspace workspace_;
    UpdateLoop updates_;
    ViewControl control_;
    ViewPicture picture_;
    PrepareQueue queue_;
    Commands commands_;
    std::unique_ptr<Report> report_;
    ViewResult lastResult_;
    /// The view of all files that were opened first.
    ViewCamera fitted_;
    std::string sessionFile_;
    bool hasEngine_ = true;
    std::unique_ptr<RecentFiles> recent_;
};

}  // namespace vpc::viewer
