#include "viewer/window/Report.h"

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <utility>

#include <wx/app.h>
#include <wx/dialog.h>
#include <nlohmann/json.hpp>

#include "viewer/document/DrawingJson.h"
#include "viewer/panels/PalettePanel.h"
#include "viewer/panels/Text.h"
#include "viewer/window/MainFrame.h"
#include "viewer/window/MessageBar.h"
#include "viewer/window/StatusLine.h"

namespace vpc::viewer {

namespace {

using nlohmann::json;
using viewer::toJson;

json toJson(const wxRect& place) {
    return {{"x", place.x}, {"y", place.y}, {"width", place.width}, {"height", place.height}};
}

template <class Values>
json list(const Values& values) {
    json all = json::array();
    for (const auto& value : values) all.push_back(json(toJson(value)));
    return all;
}

json preparing(const std::vector<PrepareJob>& jobs) {
    json all = json::array();
    for (const PrepareJob& job : jobs)
        all.push_back({{"id", job.id},
                       {"output", job.target},
                       {"state", job.StateName()},
                       {"percent", 100.0 * job.progress.Share()},
                       {"stage", job.progress.Stage()},
                       {"problem", job.problem}});
    return all;
}

/// The title of the dialog that is open on top; empty where there is none.
std::string openDialog() {
    std::string title;
    for (const wxWindow* window : wxTopLevelWindows)
        if (const auto* dialog = dynamic_cast<const wxDialog*>(window))
            if (dialog->IsModal()) title = toUtf8(dialog->GetTitle());
    return title;
}

/// Windows whose names have a stroke in them are what tests look for.
void addControls(json& controls, const wxWindow& window) {
    for (const wxWindow* child : window.GetChildren()) {
        if (!child->IsShown() || child->IsTopLevel()) continue;
        if (child->GetName().Contains("/") || child->GetName() == "budget") {
            json control = toJson(child->GetScreenRect());
            control["name"] = toUtf8(child->GetName());
            control["enabled"] = child->IsEnabled();
            controls.push_back(control);
        }
        addControls(controls, *child);
    }
}

}  // namespace

Report::Report(MainFrame& frame, std::string file) : frame_(frame), file_(std::move(file)) {
    wxTheApp->Bind(wxEVT_IDLE, &Report::OnIdle, this);
}

Report::~Report() {
    wxTheApp->Unbind(wxEVT_IDLE, &Report::OnIdle, this);
}

void Report::Ask() {
    isAsked_ = true;
    wxWakeUpIdle();
}

void Report::OnIdle(wxIdleEvent& event) {
    event.Skip();
    if (!isAsked_ || !frame_.IsIdle()) return;
    isAsked_ = false;
    frame_.view_->Update();  // who has read the report may look at the screen
    Write();
}

void Report::Write() {
    const std::string part = file_ + ".part";
    {
        std::ofstream stream(part, std::ios::binary);
        stream << State().dump(1, ' ', false, json::error_handler_t::replace) << '\n';
        stream.close();
        if (!stream) {
            std::fprintf(stderr, "vpc-viewer: the report %s could not be written\n", file_.c_str());
            return;
        }
    }
    std::rename(part.c_str(), file_.c_str());
}

json Report::State() {
    const Drawing& drawing = frame_.workspace_.Shown();
    const ViewResult& result = frame_.lastResult_;
    json state;
    state["serial"] = ++serial_;
    state["version"] = VPC_PROGRAM_VERSION;
    state["renderer"] = frame_.frames_.RendererName();
    state["canvas"] = toJson(frame_.view_->GetScreenRect());
    state["camera"] = toJson(frame_.control_.Camera());
    state["entities"] = Entities();
    state["shown"] = result.shown;
    state["total"] = result.inAll;
    state["budget"] = drawing.pointBudget;
    unsigned long long level = 0;
    for (const ShownEntity& entity : result.entities) level = std::max(level, entity.level);
    state["level"] = level;
    state["updateMs"] = result.milliseconds;
    state["frameMs"] = frame_.frames_.FrameMilliseconds();
    state["longestBlockMs"] = heartbeat_.TakeLongest();
    state["sections"] = list(drawing.sections);
    state["clips"] = list(drawing.clips);
    state["style"] = toJson(drawing.style);
    state["tool"] = nameOf(frame_.control_.Tool());
    state.update(Measured());
    const std::optional<glm::dvec3>& cursor = frame_.control_.CursorPlace();
    state["cursor"] = cursor ? json(toJson(*cursor)) : json();
    state["status"] = frame_.status_->Texts();
    state["message"] = frame_.messages_->Shown();
    state["dialog"] = openDialog();
    state["preparing"] = preparing(frame_.queue_.Jobs());
    state["recentFiles"] = frame_.preferences_.RecentFiles();
    state["undo"] = frame_.workspace_.UndoLabel();
    state["redo"] = frame_.workspace_.RedoLabel();
    state["controls"] = Controls();
    return state;
}

json Report::Entities() const {
    json all = json::array();
    for (const Entity& entity : frame_.workspace_.Shown().entities) {
        const EntityFacts* facts = frame_.workspace_.FactsOf(entity.id);
        json one = toJson(entity);
        one["id"] = entity.id;
        if (facts != nullptr) {
            one["shown"] = entity.visible ? facts->shown.shown : 0;
            one["total"] = facts->points;
            one["level"] = facts->shown.level;
            one["problem"] = facts->shown.problem;
            one["unit"] = facts->unit;
        }
        all.push_back(one);
    }
    return all;
}

json Report::Measured() const {
    json state{{"picks", json::array()}, {"measure", json()}};
    const PickTool* picking = frame_.control_.Picking();
    if (picking == nullptr) return state;
    for (const Pick& pick : picking->Picks())
        state["picks"].push_back({{"place", toJson(pick.place)},
                                  {"colour", toJson(pick.colour)},
                                  {"entity", pick.entity}});
    if (const std::optional<PickTool::Measure> measure = picking->Measured())
        state["measure"] = {{"distance", measure->distance},
                            {"dx", measure->offset.x},
                            {"dy", measure->offset.y},
                            {"dz", measure->offset.z}};
    return state;
}

json Report::Controls() const {
    json controls = json::array();
    addControls(controls, frame_);
    for (const wxWindow* window : wxTopLevelWindows)
        if (window != &frame_ && window->IsShown()) addControls(controls, *window);
    for (const PalettePanel::Cell& cell : frame_.palette_->Cells()) {
        json control = toJson(cell.place);
        control["name"] = cell.name;
        control["enabled"] = true;
        controls.push_back(control);
    }
    return controls;
}

}  // namespace vpc::viewer
