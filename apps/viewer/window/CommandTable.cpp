#include "viewer/window/CommandTable.h"

#include <array>
#include <utility>

#include <wx/colordlg.h>
#include <wx/textentry.h>

#include "viewer/panels/Text.h"
#include "viewer/window/Commands.h"
#include "viewer/window/FileDialogs.h"
#include "viewer/window/HelpPage.h"
#include "viewer/window/MainFrame.h"
#include "viewer/window/PointSizeDialog.h"
#include "viewer/window/ScreenshotDialog.h"

namespace vpc::viewer {

namespace {

Command plain(const char* name, const wxString& label, const wxString& help,
              std::function<void()> run) {
    return {name, label, help, std::move(run), {}, {}, {}};
}

Command toggle(const char* name, const wxString& label, const wxString& help,
               std::function<bool()> isOn, std::function<void()> run) {
    return {name, label, help, std::move(run), {}, std::move(isOn), {}};
}

std::function<bool()> hasEntities(MainFrame& frame) {
    return [&frame] { return !frame.GetWorkspace().Kept().entities.empty(); };
}

void saveSessionAs(MainFrame& frame) {
    const std::string file = askForSessionTarget(&frame, "view.vpcview");
    if (!file.empty()) frame.SaveSession(file);
}

void takeScreenshot(MainFrame& frame) {
    const auto size = askForPictureSize(&frame, frame.PictureSize(), frame.LargestPictureSide());
    if (!size) return;
    const std::string file = askForPictureTarget(&frame);
    if (!file.empty()) frame.TakeScreenshot(file, *size);
}

wxMenu& addFileMenu(Commands& commands, MainFrame& frame) {
    commands.AddMenu("&File");
    commands.Add(plain("open", "&Open...\tCtrl+O", "Open tree files or a session",
                       [&frame] { frame.OpenFiles(askForFiles(&frame)); }));
    commands.Add(plain("prepare", "Add scans and &prepare...\tCtrl+P",
                       "Turn scans into a tree file, which opens by itself",
                       [&frame] { frame.PrepareScans({}); }));
    wxMenu& recent = commands.AddSubmenu("&Recent files");
    commands.AddSeparator();
    commands.Add(plain("open-session", "Open s&ession...\tCtrl+Shift+O",
                       "Go on where a session was saved", [&frame] {
                           const std::string file = askForSession(&frame);
                           if (!file.empty()) frame.OpenFiles({file});
                       }));
    commands.Add(
        plain("save", "&Save session\tCtrl+S", "Save files, view, cuts and styles", [&frame] {
            if (frame.SessionFile().empty())
                saveSessionAs(frame);
            else
                frame.SaveSession(frame.SessionFile());
        }));
    commands.Add(plain("save-as", "Save session &as...\tCtrl+Shift+S",
                       "Save the session under another name", [&frame] { saveSessionAs(frame); }));
    commands.AddSeparator();
    commands.Add(plain("screenshot", "Save p&icture...\tCtrl+Shift+P",
                       "Save the view as a picture of any size",
                       [&frame] { takeScreenshot(frame); }));
    commands.AddSeparator();
    commands.Add(plain("quit", "&Quit\tCtrl+Q", "Close the window", [&frame] { frame.Close(); }));
    return recent;
}

/// The key means the text that is being edited, where one is.
void copy(MainFrame& frame) {
    if (auto* text = dynamic_cast<wxTextEntry*>(wxWindow::FindFocus()))
        text->Copy();
    else
        frame.Control().Copy();
}

void addEditMenu(Commands& commands, MainFrame& frame) {
    const auto labelled = [](const char* verb, const std::string& what, const char* key) {
        return verb + (what.empty() ? wxString() : ": " + fromUtf8(what)) + key;
    };
    commands.AddMenu("&Edit");
    commands.Add({"undo",
                  "&Undo\tCtrl+Z",
                  "Undo the last change of sections, clips or properties",
                  [&frame] { frame.GetWorkspace().Undo(); },
                  [&frame] { return !frame.GetWorkspace().UndoLabel().empty(); },
                  {},
                  [&frame, labelled] {
                      return labelled("&Undo", frame.GetWorkspace().UndoLabel(), "\tCtrl+Z");
                  }});
    commands.Add({"redo",
                  "&Redo\tCtrl+Shift+Z",
                  "Do again what was undone",
                  [&frame] { frame.GetWorkspace().Redo(); },
                  [&frame] { return !frame.GetWorkspace().RedoLabel().empty(); },
                  {},
                  [&frame, labelled] {
                      return labelled("&Redo", frame.GetWorkspace().RedoLabel(), "\tCtrl+Shift+Z");
                  }});
    commands.AddSeparator();
    commands.Add({"copy",
                  "&Copy picks\tCtrl+C",
                  "Copy the picked points and the distance as text",
                  [&frame] { copy(frame); },
                  [&frame] {
                      const PickTool* picking = frame.Control().Picking();
                      return picking != nullptr && !picking->Picks().empty();
                  },
                  {},
                  {}});
}

void addStandardViews(Commands& commands, MainFrame& frame) {
    int number = 0;
    for (const StandardView view : standardViews)
        commands.Add(plain("", wxString::Format("%s\tCtrl+%d", nameOf(view), ++number),
                           wxString::Format("Look from: %s", nameOf(view)),
                           [&frame, view] { frame.Control().ShowFrom(view); }));
}

/// A part of the style that is on or off.
void addStyleSwitch(Commands& commands, MainFrame& frame, const wxString& label,
                    const wxString& help, bool ViewStyle::*part) {
    commands.Add(toggle(
        "", label, help, [&frame, part] { return frame.GetWorkspace().Kept().style.*part; },
        [&frame, part] {
            ViewStyle style = frame.GetWorkspace().Kept().style;
            style.*part = !(style.*part);
            frame.SetStyle(style);
        }));
}

void chooseBackground(MainFrame& frame) {
    ViewStyle style = frame.GetWorkspace().Kept().style;
    const wxColour chosen = wxGetColourFromUser(
        &frame, wxColour(style.background.red, style.background.green, style.background.blue),
        "Background");
    if (!chosen.IsOk()) return;
    style.background = {chosen.Red(), chosen.Green(), chosen.Blue()};
    frame.SetStyle(style);
}

void choosePointSize(MainFrame& frame) {
    ViewStyle style = frame.GetWorkspace().Kept().style;
    if (askForPointSize(&frame, style)) frame.SetStyle(style);
}

void addViewMenu(Commands& commands, MainFrame& frame) {
    ViewControl& control = frame.Control();
    commands.AddMenu("&View");
    commands.Add(
        plain("fit", "&Fit all\tCtrl+0", "Show everything", [&control] { control.Fit(); }));
    addStandardViews(commands, frame);
    commands.AddSeparator();
    commands.Add({"back",
                  "View &before\tAlt+Left",
                  "Go back to the view before",
                  [&control] { control.GoBack(); },
                  [&control] { return control.CanGoBack(); },
                  {},
                  {}});
    commands.Add({"",
                  "View &after\tAlt+Right",
                  "Go forward again",
                  [&control] { control.GoForward(); },
                  [&control] { return control.CanGoForward(); },
                  {},
                  {}});
    commands.AddSeparator();
    commands.Add(toggle(
        "perspective", "&Perspective\tCtrl+Shift+V", "Perspective or parallel view",
        [&control] { return control.Camera().perspective; },
        [&control] { control.SetPerspective(!control.Camera().perspective); }));
    commands.Add(toggle(
        "", "&Level horizon", "Keep the horizon level while turning",
        [&control] { return control.GetHorizon() == Horizon::Level; },
        [&frame, &control] {
            const bool level = control.GetHorizon() != Horizon::Level;
            control.SetHorizon(level ? Horizon::Level : Horizon::Free);
            frame.GetPreferences().SetLevelHorizon(level);
        }));
    commands.AddSeparator();
    commands.Add(plain("", "Point si&ze...", "How large points are drawn",
                       [&frame] { choosePointSize(frame); }));
    addStyleSwitch(commands, frame, "&Round points", "Round or square points",
                   &ViewStyle::roundPoints);
    addStyleSwitch(commands, frame, "S&hading", "Darken edges, so that shapes are seen",
                   &ViewStyle::shaded);
    commands.Add(plain("", "Back&ground...", "Colour behind the points",
                       [&frame] { chooseBackground(frame); }));
    commands.AddSeparator();
    addStyleSwitch(commands, frame, "A&xes", "Show the directions of x, y and z", &ViewStyle::axes);
    addStyleSwitch(commands, frame, "S&cale bar", "Show a length", &ViewStyle::scaleBar);
    addStyleSwitch(commands, frame, "Le&gend", "Show what colours stand for", &ViewStyle::legend);
}

struct ToolEntry {
    ToolKind kind;
    const char* name;
    const char* label;
    const char* help;
};

constexpr std::array<ToolEntry, 9> toolEntries{{
    {ToolKind::Navigate, "navigate", "&Navigate\tCtrl+Shift+N", "Turn, slide and zoom only"},
    {ToolKind::Walk, "walk", "&Walk\tCtrl+Shift+W", "Walk through the inside of a building"},
    {ToolKind::Pick, "pick", "&Pick and measure\tCtrl+Shift+M",
     "Coordinates of a point, distance of two"},
    {ToolKind::MoveSection, "section-move", "&Move sections", "Drag section planes"},
    {ToolKind::SectionThroughPicks, "section-picks", "Section &through three points",
     "A section plane through three points that are clicked"},
    {ToolKind::ClipBoxInside, "clip-box", "Clip &box, keep inside",
     "Drag a rectangle; what is in it stays"},
    {ToolKind::ClipBoxOutside, "clip-box-outside", "Clip box, keep outside",
     "Drag a rectangle; what is in it goes"},
    {ToolKind::ClipPolygonInside, "clip-polygon", "Clip p&olygon, keep inside",
     "Click corners; what is between them stays"},
    {ToolKind::ClipPolygonOutside, "clip-polygon-outside", "Clip polygon, keep outside",
     "Click corners; what is between them goes"},
}};

void addTool(Commands& commands, MainFrame& frame, const ToolEntry& entry) {
    commands.Add({entry.name,
                  entry.label,
                  entry.help,
                  [&frame, kind = entry.kind] { frame.UseTool(kind); },
                  entry.kind == ToolKind::Navigate ? nullptr : hasEntities(frame),
                  [&frame, kind = entry.kind] { return frame.Control().Tool() == kind; },
                  {}});
}

void addSection(Commands& commands, MainFrame& frame, Axis axis, const char* name, char letter) {
    commands.Add({name,
                  wxString::Format("Section across &%c", letter),
                  wxString::Format("A section plane across %c, to be dragged", letter),
                  [&frame, axis] { frame.AddSection(axis); },
                  hasEntities(frame),
                  {},
                  {}});
}

void addToolsMenu(Commands& commands, MainFrame& frame) {
    commands.AddMenu("&Tools");
    for (const ToolEntry& entry : toolEntries) {
        if (entry.kind == ToolKind::MoveSection) {
            commands.AddSeparator();
            addSection(commands, frame, Axis::X, "section-x", 'X');
            addSection(commands, frame, Axis::Y, "section-y", 'Y');
            addSection(commands, frame, Axis::Z, "section-z", 'Z');
        }
        if (entry.kind == ToolKind::ClipBoxInside) commands.AddSeparator();
        addTool(commands, frame, entry);
    }
}

void addHelpMenu(Commands& commands, MainFrame& frame) {
    commands.AddMenu("&Help");
    commands.Add(plain("", "&Mouse, touchpad and keys\tF1", "What they do",
                       [&frame] { showHelpPage(&frame); }));
    commands.Add(plain("", "&About", "Which program this is", [&frame] { showAbout(&frame); }));
}

}  // namespace

wxMenu& addCommands(Commands& commands, MainFrame& frame) {
    wxMenu& recent = addFileMenu(commands, frame);
    addEditMenu(commands, frame);
    addViewMenu(commands, frame);
    addToolsMenu(commands, frame);
    addHelpMenu(commands, frame);
    return recent;
}

std::vector<std::string> toolNames() {
    return {"open",
            "prepare",
            "save",
            "screenshot",
            "",
            "undo",
            "redo",
            "",
            "fit",
            "back",
            "perspective",
            "",
            "navigate",
            "walk",
            "pick",
            "",
            "section-x",
            "section-y",
            "section-z",
            "section-picks",
            "section-move",
            "",
            "clip-box",
            "clip-box-outside",
            "clip-polygon",
            "clip-polygon-outside"};
}

}  // namespace vpc::viewer
