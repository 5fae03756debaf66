#include "viewer/window/MainFrame.h"

#include <algorithm>
#include <filesystem>
#include <utility>

#include <wx/app.h>
#include <wx/display.h>
#include <wx/dnd.h>
#include <wx/msgdlg.h>
#include <wx/splitter.h>

#include "viewer/document/Units.h"
#include "viewer/panels/BudgetPanel.h"
#include "viewer/panels/CutsPanel.h"
#include "viewer/panels/EntityPanel.h"
#include "viewer/panels/PalettePanel.h"
#include "viewer/panels/Text.h"
#include "viewer/preparing/PrepareDialog.h"
#include "viewer/preparing/PreparePanel.h"
#include "viewer/window/CommandTable.h"
#include "viewer/window/MessageBar.h"
#include "viewer/window/PluginFile.h"
#include "viewer/window/RecentFiles.h"
#include "viewer/window/Report.h"
#include "viewer/window/Screenshot.h"
#include "viewer/window/StatusLine.h"
#include "viewer/window/ToolStrip.h"

namespace vpc::viewer {

namespace {

constexpr int sideWidth = 340;

constexpr const char* emptyHeading = "Drop tree files or scans here";
constexpr const char* emptyText =
    "or press Ctrl+O to open a tree file,\nCtrl+P to prepare scans.\n\n"
    "F1 tells what mouse, touchpad and keys do.";

constexpr const char* noMemory =
    "There is not enough memory to draw this view; lower the point budget or make the window "
    "smaller.";

class FileDrop : public wxFileDropTarget {
public:
    explicit FileDrop(std::function<void(const std::vector<std::string>&)> open)
        : open_(std::move(open)) {}

    bool OnDropFiles(wxCoord, wxCoord, const wxArrayString& names) override {
        std::vector<std::string> files;
        for (const wxString& name : names) files.push_back(toUtf8(name));
        open_(files);
        return true;
    }

private:
    std::function<void(const std::vector<std::string>&)> open_;
};

std::string absolutePath(const std::string& file) {
    std::error_code error;
    const std::filesystem::path path = std::filesystem::absolute(file, error);
    return error ? file : path.lexically_normal().string();
}

/// Whether the place's title bar can be reached: a display may have gone since the last run.
bool isOnDisplay(const wxRect& place) {
    return wxDisplay::GetFromPoint(place.GetTopLeft() + wxPoint(place.width / 2, 16)) !=
           wxNOT_FOUND;
}

bool hasExtension(const std::string& file, const char* extension) {
    return fromUtf8(file).Lower().EndsWith(extension);
}

}  // namespace

MainFrame::MainFrame(const CommandLine& commandLine)
    : wxFrame(nullptr, wxID_ANY, "vpc-viewer"),
      commandLine_(commandLine),
      splitter_(new wxSplitterWindow(this, wxID_ANY, wxDefaultPosition, wxDefaultSize,
                                     wxSP_LIVE_UPDATE | wxSP_THIN_SASH)),
      middle_(new wxPanel(splitter_)),
      view_(new ViewPanel(middle_, ViewStyle().background)),
      frames_(makeRenderer(commandLine.renderer, rendererProblem_),
              [this](draw::Image picture, const ViewCamera& camera) {
                  OnPoints(std::move(picture), camera);
              }),
      engine_(
          commandLine.pluginFile.empty() ? findPlugin() : commandLine.pluginFile,
          [this](const std::function<void()>& call) { mailbox_.CallAfter(call); },
          [this](const Engine::Problem& problem) { OnEngineFailed(problem); }),
      workspace_(engine_, *this),
      updates_(
          engine_, frames_, [this] { return RequestNow(); },
          [this](const ViewResult& result, const std::string& problem) {
              OnUpdated(result, problem);
          }),
      control_(workspace_, engine_, frames_, updates_, *view_,
               {[this](const std::string& sentence) { status_->Say(sentence); },
                [this] { picture_.Redraw(); }, [this] { ShowState(); }, [this] { ShowCursor(); },
                [this](const ViewStyle& style) { SetStyle(style); }}),
      picture_(
          *view_, [this] { return OverlayNow(); }, [this] { return workspace_.Shown().style; }),
      queue_(
          PrepareQueue::FindProgram(), [this] { jobs_->ShowJobs(); },
          [this](const std::string& file) { OpenFiles({file}); }),
      commands_(*this) {
    BuildWindow();
    PlaceOnScreen();
    frames_.OnLackOfMemory([this] { Tell(noMemory); });
    updates_.OnRest([this] { control_.OnRest(); });
    view_->SetInput(&control_);
    Bind(wxEVT_CLOSE_WINDOW, &MainFrame::OnClosing, this);
    // Keys go nowhere once the control that had them is gone: a row that was removed.
    Bind(wxEVT_IDLE, [this](wxIdleEvent& event) {
        event.Skip();
        if (IsActive() && wxWindow::FindFocus() == nullptr) view_->SetFocus();
    });
}

MainFrame::~MainFrame() {
    // Before the members that the panels and the view call.
    view_->SetInput(nullptr);
    splitter_->Destroy();
}

void MainFrame::BuildWindow() {
    status_ = new StatusLine(this);
    SetStatusBar(status_);
    recent_ = std::make_unique<RecentFiles>(addCommands(commands_, *this),
                                            [this](const std::string& file) { OpenFiles({file}); });
    recent_->Show(preferences_.RecentFiles());
    commands_.Attach();
    tools_ = new ToolStrip(middle_, commands_, toolNames());
    messages_ = new MessageBar(middle_);
    jobs_ = new PreparePanel(middle_, queue_);
    auto* column = new wxBoxSizer(wxVERTICAL);  // the panel's
    column->Add(tools_, wxSizerFlags().Expand());
    column->Add(messages_, wxSizerFlags().Expand());
    column->Add(view_, wxSizerFlags(1).Expand());
    column->Add(jobs_, wxSizerFlags().Expand());
    middle_->SetSizer(column);
    splitter_->SetMinimumPaneSize(FromDIP(200));
    splitter_->SetSashGravity(1.0);
    splitter_->SplitVertically(middle_, BuildSide(), -FromDIP(sideWidth));
    splitter_->SetDropTarget(  // the window's
        new FileDrop([this](const std::vector<std::string>& files) { OpenFiles(files); }));
    jobs_->ShowJobs();
}

wxWindow* MainFrame::BuildSide() {
    auto* side = new wxPanel(splitter_);
    EntityPanel::Actions actions;
    actions.show = [this](int entity, bool isVisible) { workspace_.ShowEntity(entity, isVisible); };
    actions.choose = [this](int) { ShowProperties(); };
    actions.close = [this](int entity) { workspace_.CloseEntity(entity); };
    actions.describe = [this](int entity) { return Describe(entity); };
    palette_ = new PalettePanel(side, [this](int entity, const std::vector<PropertyEdit>& edits) {
        workspace_.SetProperties(entity, edits);
    });
    entities_ = new EntityPanel(side, std::move(actions));
    cuts_ = new CutsPanel(side, [this](const std::string& label, const Drawing& drawing) {
        workspace_.Change(label, drawing);
    });
    budget_ = new BudgetPanel(
        side, [this](unsigned long long budget) { workspace_.SetPointBudget(budget); });
    auto* column = new wxBoxSizer(wxVERTICAL);  // the panel's
    column->Add(entities_, wxSizerFlags(3).Expand());
    column->Add(palette_, wxSizerFlags(6).Expand());
    column->Add(cuts_, wxSizerFlags(3).Expand());
    column->Add(budget_, wxSizerFlags().Expand());
    side->SetSizer(column);
    return side;
}

void MainFrame::PlaceOnScreen() {
    SetMinClientSize(FromDIP(wxSize(480, 320)));
    const wxRect last = preferences_.WindowPlace();
    if (commandLine_.windowSize)
        SetSize(0, 0, commandLine_.windowSize->width, commandLine_.windowSize->height);
    else if (last.width > 0 && last.height > 0 && isOnDisplay(last))
        SetSize(last);
    else
        SetSize(FromDIP(wxSize(1280, 800)));
}

void MainFrame::Start() {
    workspace_.SetStyle(preferences_.Style());
    control_.SetHorizon(preferences_.LevelHorizon() ? Horizon::Level : Horizon::Free);
    if (commandLine_.pointBudget) workspace_.SetPointBudget(*commandLine_.pointBudget);
    budget_->ShowBudget(workspace_.Kept().pointBudget);
    if (!rendererProblem_.empty()) Tell(rendererProblem_);
    ShowEmpty();
    view_->SetFocus();
    if (!commandLine_.sessionFile.empty())
        workspace_.OpenSession(absolutePath(commandLine_.sessionFile));
    if (!commandLine_.reportFile.empty())
        report_ = std::make_unique<Report>(*this, commandLine_.reportFile);
    // Once the window is there: scans bring a dialog.
    mailbox_.CallAfter([this] { OpenFiles(commandLine_.files); });
}

void MainFrame::AskForReport() {
    if (report_) report_->Ask();
}

bool MainFrame::IsIdle() const {
    const bool isOpening = hasEngine_ && workspace_.IsOpening();
    return !isOpening && !engine_.IsBusy() && updates_.IsIdle() && frames_.IsIdle() &&
           picture_.IsIdle() && budget_->IsIdle() && !wxTheApp->HasPendingEvents();
}

void MainFrame::OpenFiles(const std::vector<std::string>& files) {
    std::vector<std::string> scans;
    for (const std::string& name : files) {
        const std::string file = absolutePath(name);
        std::error_code error;
        if (!std::filesystem::exists(file, error))
            Tell("The file " + file + " does not exist.");
        else if (hasExtension(file, ".vpcview"))
            workspace_.OpenSession(file);
        else if (hasExtension(file, ".vpt"))
            workspace_.OpenTree(file);
        else
            scans.push_back(file);
    }
    // Later, since it brings a dialog: the program that dropped the files waits for an answer.
    if (!scans.empty()) mailbox_.CallAfter([this, scans] { PrepareScans(scans); });
}

void MainFrame::PrepareScans(const std::vector<std::string>& scans) {
    if (const std::optional<PrepareJob> job = askForPrepareJob(this, queue_, scans))
        queue_.Add(*job);
}

void MainFrame::SaveSession(const std::string& file) {
    if (!workspace_.SaveSession(file, control_.Camera())) return;
    sessionFile_ = file;
    preferences_.AddRecentFile(file);
    recent_->Show(preferences_.RecentFiles());
    ShowTitle();
    status_->Say("Saved " + file);
}

void MainFrame::TakeScreenshot(const std::string& file, const draw::ImageSize& size) {
    if (updates_.DrawsPicture()) {
        Tell("Another picture is being drawn; save this one when that is done.");
        return;
    }
    const Screenshot shot{
        file,        size, view_->PictureSize(), control_.Camera(), workspace_.Shown().style,
        OverlayNow()};
    status_->Say("Drawing " + file);
    shot.Take(frames_.Renderer(), updates_, [this, file](const std::string& problem) {
        status_->Say(problem.empty() ? "Saved " + file : "");
        if (!problem.empty()) Tell(problem);
    });
}

void MainFrame::Tell(const std::string& sentence) {
    messages_->Tell(sentence);
}

void MainFrame::SetStyle(const ViewStyle& style) {
    preferences_.SetStyle(workspace_.Kept().style, style);
    workspace_.SetStyle(style);
}

void MainFrame::AddSection(Axis axis) {
    try {
        const Section section = sectionAcross(axis, workspace_.ShownBox());
        workspace_.Change("add section", withSection(workspace_.Kept(), section));
        UseTool(ToolKind::MoveSection);
    } catch (const Refusal& refusal) {
        Tell(refusal.what());
    }
}

Overlay MainFrame::OverlayNow() const {
    Overlay overlay;
    control_.AddShapes(overlay.shapes);
    overlay.unit = Units::Symbol(workspace_.Shown().unit);
    for (const ShownEntity& entity : lastResult_.entities) {
        const Entity* drawn = workspace_.Shown().Find(entity.id);
        if (drawn == nullptr || !drawn->visible || entity.legendTitle.empty()) continue;
        overlay.legends.push_back(
            {entity.legendTitle, draw::ColourRamp(entity.ramp, entity.range)});
    }
    return overlay;
}

ViewRequest MainFrame::RequestNow() const {
    return {control_.Camera(), view_->PictureSize(), workspace_.Shown()};
}

void MainFrame::OnPoints(draw::Image picture, const ViewCamera& camera) {
    if (workspace_.Kept().entities.empty()) return;
    picture_.Show(std::move(picture), camera);
    status_->ShowFrameTime(frames_.FrameMilliseconds());
    control_.LookUnderCursor();
}

void MainFrame::OnUpdated(const ViewResult& result, const std::string& problem) {
    workspace_.TakeFacts(result);
    lastResult_ = result;
    status_->ShowPoints(result);
    entities_->ShowDescriptions();
    std::vector<std::string> standing{problem};
    for (const ShownEntity& entity : result.entities) standing.push_back(entity.problem);
    messages_->SetStanding(linesOf(standing));
    ShowProperties();
}

void MainFrame::OnEngineFailed(const Engine::Problem& problem) {
    hasEngine_ = false;
    updates_.Stop();
    messages_->SetStanding(problem);
}

void MainFrame::ShowEmpty() {
    if (!workspace_.Kept().entities.empty()) return;
    picture_.Clear();
    view_->ShowText(emptyHeading, emptyText, workspace_.Kept().style.background);
}

void MainFrame::ShowTitle() {
    const std::vector<Entity>& entities = workspace_.Kept().entities;
    wxString title;
    if (!sessionFile_.empty())
        title = fromUtf8(std::filesystem::path(sessionFile_).filename().string());
    else if (!entities.empty())
        title = fromUtf8(entities.front().name);
    if (sessionFile_.empty() && entities.size() > 1)
        title += wxString::Format(" and %zu more", entities.size() - 1);
    SetTitle(title.empty() ? wxString("vpc-viewer") : title + wxString(L" \u2013 ") + "vpc-viewer");
}

void MainFrame::ShowProperties() {
    const int entity = entities_->Chosen();
    if (entity == 0) {
        palette_->ShowProperties(0, {});
        return;
    }
    palette_->Await(entity);
    engine_.Properties(entity, [this, entity](const std::vector<Property>& properties) {
        if (entities_->Chosen() == entity) palette_->ShowProperties(entity, properties);
    });
}

void MainFrame::ShowCursor() {
    status_->ShowCursor(control_.CursorPlace(), workspace_.ShownBox().Diagonal());
}

wxString MainFrame::Describe(int entity) const {
    const EntityFacts* facts = workspace_.FactsOf(entity);
    if (facts == nullptr) return "not open";
    const Entity* drawn = workspace_.Kept().Find(entity);
    if (drawn != nullptr && !drawn->visible) return "hidden, " + grouped(facts->points) + " points";
    return grouped(facts->shown.shown) + " of " + grouped(facts->points) + " points";
}

void MainFrame::ShowState() {
    commands_.Refresh();
    tools_->ShowState();
}

void MainFrame::OnClosing(wxCloseEvent& event) {
    if (event.CanVeto() && queue_.IsBusy() &&
        wxMessageBox("Scans are still being prepared. Stop that and close?", "Close",
                     wxYES_NO | wxICON_QUESTION, this) != wxYES) {
        event.Veto();
        return;
    }
    updates_.Stop();
    if (!IsMaximized() && !IsIconized()) preferences_.SetWindowPlace(GetRect());
    if (report_) report_->Write();
    Hide();
    queue_.CancelAll();
    Destroy();
}

void MainFrame::OnDrawingChanged() {
    const Drawing& drawing = workspace_.Kept();
    entities_->ShowEntities(drawing);
    cuts_->ShowCuts(drawing);
    budget_->ShowBudget(drawing.pointBudget);
    picture_.Redraw();
    updates_.Ask();
    ShowTitle();
    ShowEmpty();
    ShowState();
}

void MainFrame::OnPreview() {
    picture_.Redraw();
    updates_.AskPreview();
}

void MainFrame::OnStyleChanged() {
    control_.Redraw();
    ShowState();
    ShowEmpty();
}

void MainFrame::OnOpened(const Entity& entity, bool isFirst) {
    const bool isAlone = workspace_.Kept().entities.size() == 1;
    // Not where the user has gone on from the first of several.
    if (isAlone || (isFirst && control_.Camera() == fitted_)) {
        control_.BeginWithAll();
        fitted_ = control_.Camera();
    } else {
        status_->Say("Opened " + entity.name + "; Ctrl+0 shows everything.");
    }
    preferences_.AddRecentFile(entity.file);
    recent_->Show(preferences_.RecentFiles());
}

void MainFrame::OnSessionOpened(const Session& session, const std::string& file) {
    sessionFile_ = file;
    control_.BeginWith(session.camera);
    preferences_.AddRecentFile(file);
    recent_->Show(preferences_.RecentFiles());
}

void MainFrame::OnProblem(const std::string& sentence) {
    Tell(sentence);
}

}  // namespace vpc::viewer
