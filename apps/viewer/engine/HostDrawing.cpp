#include "viewer/engine/HostDrawing.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <filesystem>
#include <new>
#include <utility>

#include <glm/common.hpp>
#include <glm/geometric.hpp>

#include "platform/OdDbUnits.h"
#include "platform/OdError.h"
#include "viewer/document/Units.h"
#include "viewer/engine/HostText.h"

namespace vpc::viewer {

namespace {

/// Makes a call into the plug-in. Returns a sentence for whatever leaves it.
template <class Call>
std::string problemOf(const Call& call) {
    try {
        call();
        return {};
    } catch (const OdError& error) {  // it is no std::exception
        return fromHostText(error.description());
    } catch (const std::bad_alloc&) {
        return "There is not enough memory. Lower the budget or close a file.";
    } catch (const std::exception& error) {
        return error.what();
    }
}

/// As the palette names it.
std::string nameOf(OdDb::UnitsValue unit) {
    return Units::Name(unit);
}

/// Around the points, placed in the drawing.
Box placedBox(const PointCloud& cloud) {
    Box placed;
    const Box bounds = cloud.Bounds();
    if (bounds.IsEmpty()) return placed;
    const Placement placement = cloud.State().placement;
    for (const glm::dvec3& corner : bounds.Corners()) placed.Add(placement.ToDrawing(corner));
    return placed;
}

/// As near to where one looks as the points are: floats are finest there.
glm::dvec3 originFor(const ViewCamera& camera, const Box& box) {
    const glm::dvec3 origin =
        box.IsEmpty() ? camera.target : glm::clamp(camera.target, box.min, box.max);
    const bool isFinite =
        std::isfinite(origin.x) && std::isfinite(origin.y) && std::isfinite(origin.z);
    return isFinite ? origin : glm::dvec3(0.0);
}

}  // namespace

HostDrawing::HostDrawing(const std::string& pluginFile)
    : plugin_(pluginFile), palette_(plugin_.Palette()) {
}

PointCloud* HostDrawing::Find(int id) {
    const auto found = clouds_.find(id);
    return found == clouds_.end() ? nullptr : found->second.get();
}

// --- Files ---------------------------------------------------------------------------------------

Engine::Opened HostDrawing::Open(const Entity& entity, bool asGiven, const std::string& unit) {
    Engine::Opened opened;
    opened.entity = entity;
    opened.problem = problemOf([&] {
        auto cloud = std::make_unique<PointCloud>(plugin_, drawing_, entity);
        // Files that were opened together all come without a unit.
        if (clouds_.empty()) drawing_.setINSUNITS(cloud->Unit());
        UseUnit(unit);
        if (!asGiven) cloud->SetState(Placed(entity, *cloud));
        opened.entity = cloud->State();
        opened.box = cloud->Bounds();
        opened.points = cloud->Total();
        opened.unit = nameOf(cloud->Unit());
        opened.drawingUnit = nameOf(drawing_.getINSUNITS());
        clouds_[entity.id] = std::move(cloud);
    });
    return opened;
}

Entity HostDrawing::Placed(const Entity& entity, const PointCloud& cloud) const {
    Entity placed;
    placed.id = entity.id;
    placed.file = entity.file;
    placed.name = std::filesystem::path(entity.file).stem().string();
    placed.placement.scale = oddbGetUnitsConversion(cloud.Unit(), drawing_.getINSUNITS());
    if (!isSound(placed.placement)) placed.placement.scale = 1.0;
    return placed;
}

void HostDrawing::UseUnit(const std::string& unit) {
    if (const auto code = Units::Code(unit))
        drawing_.setINSUNITS(static_cast<OdDb::UnitsValue>(*code));
}

void HostDrawing::Close(int id) {
    clouds_.erase(id);
}

// --- Views ---------------------------------------------------------------------------------------

ViewResult HostDrawing::Update(const ViewRequest& request) {
    request_ = request;
    UseUnit(request.drawing.unit);
    const auto start = std::chrono::steady_clock::now();
    const std::vector<std::string> problems = Show(request);
    ViewResult result;
    result.milliseconds =
        std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
    Box box;
    double area = 0.0;
    for (std::size_t i = 0; i < problems.size(); ++i) {
        const Entity& entity = request.drawing.entities[i];
        const ShownEntity& shown = result.entities.emplace_back(FactsOf(entity, problems[i]));
        const PointCloud* const cloud = Find(entity.id);
        if (cloud == nullptr || !entity.visible) continue;
        result.shown += shown.shown;
        result.inAll += shown.inAll;
        area += cloud->ShownArea();
        box.Add(placedBox(*cloud));
    }
    result.origin = originFor(request.camera, box);
    if (result.shown > 0) result.spacing = std::sqrt(area / static_cast<double>(result.shown));
    return result;
}

ShownEntity HostDrawing::FactsOf(const Entity& entity, std::string problem) {
    ShownEntity facts;
    if (problem.empty()) problem = problemOf([&] { facts = Find(entity.id)->Facts(); });
    facts.id = entity.id;
    if (!problem.empty()) facts.problem = problem;
    return facts;
}

std::map<int, unsigned long long> HostDrawing::Shares(const Drawing& drawing) {
    // The coarsest level of a tree fits in, as a rule, so that no small file vanishes.
    constexpr unsigned long long enough = 20'000;
    std::vector<std::pair<unsigned long long, int>> wanted;  // by what each can use
    for (const Entity& entity : drawing.entities)
        if (const PointCloud* const cloud = Find(entity.id); cloud != nullptr && entity.visible)
            wanted.emplace_back(cloud->MostSlots(), entity.id);
    std::sort(wanted.begin(), wanted.end());
    std::map<int, unsigned long long> shares;
    unsigned long long rest = drawing.pointBudget;
    double lacking = 0.0;
    for (std::size_t i = 0; i < wanted.size(); ++i) {
        const auto& [most, id] = wanted[i];
        shares[id] = std::min({most, enough, rest / (wanted.size() - i)});
        rest -= shares[id];
        lacking += static_cast<double>(most - shares[id]);
    }
    if (lacking <= 0.0) return shares;
    const double part = std::min(1.0, static_cast<double>(rest) / lacking);
    for (const auto& [most, id] : wanted)
        shares[id] +=
            static_cast<unsigned long long>(part * static_cast<double>(most - shares[id]));
    return shares;
}

std::vector<std::string> HostDrawing::Show(const ViewRequest& request) {
    for (const auto& [id, cloud] : clouds_)
        if (request.drawing.Find(id) == nullptr) cloud->Hide();
    auto shares = Shares(request.drawing);
    std::vector<std::string> problems;
    problems.reserve(request.drawing.entities.size());
    for (const Entity& entity : request.drawing.entities)
        problems.push_back(ShowOne(request, entity, shares[entity.id]));
    return problems;
}

std::string HostDrawing::ShowOne(const ViewRequest& request, const Entity& entity,
                                 unsigned long long budget) {
    PointCloud* const cloud = Find(entity.id);
    if (cloud == nullptr) return quoted(entity.file) + " is not open.";
    return problemOf([&] {
        cloud->SetState(entity);
        if (entity.visible)
            cloud->Show(request, budget);
        else
            cloud->Hide();
    });
}

std::size_t HostDrawing::Fetch(std::span<PointVertex> memory, const glm::dvec3& origin) {
    // A pick may have gone to another view meanwhile.
    Show(request_);
    std::size_t written = 0;
    for (const Entity& entity : request_.drawing.entities)
        if (const PointCloud* const cloud = Find(entity.id); cloud != nullptr)
            written += cloud->CopyTo(memory.subspan(written), origin);
    return written;
}

std::optional<Pick> HostDrawing::PickAt(const ViewCamera& camera, const draw::ImageSize& size,
                                        const glm::ivec2& pixel) {
    ViewRequest request = request_;
    request.camera = camera;
    request.size = size;
    Show(request);
    const draw::Point3 at =
        camera.ProjectionTo(size).At({pixel.x + 0.5, pixel.y + 0.5, camera.Distance()});
    std::optional<Pick> nearest;
    const auto distance = [&camera](const Pick& pick) {
        return camera.perspective ? glm::distance(pick.place, camera.eye)
                                  : glm::dot(pick.place - camera.eye, camera.Ahead());
    };
    for (const Entity& entity : request.drawing.entities) {
        const PointCloud* const cloud = Find(entity.id);
        if (cloud == nullptr || !entity.visible) continue;
        problemOf([&] {
            const auto pick = cloud->PickAt({at.x, at.y, at.z});
            if (pick && (!nearest || distance(*pick) < distance(*nearest))) nearest = pick;
        });
    }
    return nearest;
}

// --- The palette ---------------------------------------------------------------------------------

std::vector<Property> HostDrawing::Properties(int id) {
    std::vector<Property> properties;
    PointCloud* const cloud = Find(id);
    if (cloud != nullptr) problemOf([&] { properties = palette_.List(cloud->HostEntity()); });
    return properties;
}

std::pair<Entity, std::string> HostDrawing::SetProperties(
    const Entity& entity, const std::vector<PropertyValue>& values) {
    PointCloud* const cloud = Find(entity.id);
    if (cloud == nullptr) return {entity, "The file is not open any more."};
    std::string refused;
    const std::string problem = problemOf([&] {
        // An undo may have come since the last update.
        cloud->SetState(entity);
        for (const PropertyValue& one : values)
            if (refused.empty())
                refused = palette_.Set(cloud->HostEntity(), one.property, one.value);
    });
    const Entity state = cloud->State();
    // What is fetched or picked before the next update must not take the change back.
    if (Entity* const known = request_.drawing.Find(entity.id)) *known = state;
    return {state, problem.empty() ? refused : problem};
}

}  // namespace vpc::viewer
