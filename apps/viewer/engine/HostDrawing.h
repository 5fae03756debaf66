#pragma once

#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "platform/OdDbDatabase.h"
#include "viewer/engine/Engine.h"
#include "viewer/engine/Palette.h"
#include "viewer/engine/Plugin.h"
#include "viewer/engine/PointCloud.h"

namespace vpc::viewer {

/// The host's drawing with its point clouds: the work behind Engine's functions, which say what it
/// does. One thread. What goes wrong becomes sentences here.
class HostDrawing {
public:
    /// Throws std::runtime_error with a sentence when the plug-in cannot be loaded.
    explicit HostDrawing(const std::string& pluginFile);

    Engine::Opened Open(const Entity& entity, bool asGiven, const std::string& unit);
    void Close(int id);
    ViewResult Update(const ViewRequest& request);
    std::size_t Fetch(std::span<PointVertex> memory, const glm::dvec3& origin);
    std::optional<Pick> PickAt(const ViewCamera& camera, const draw::ImageSize& size,
                               const glm::ivec2& pixel);
    std::vector<Property> Properties(int id);
    std::pair<Entity, std::string> SetProperties(const Entity& entity,
                                                 const std::vector<PropertyValue>& values);

private:
    PointCloud* Find(int id);
    /// The entity of a new file: its own name, and a scale for its unit.
    Entity Placed(const Entity& entity, const PointCloud& cloud) const;
    /// \param unit as the palette names it; an unknown one changes nothing
    void UseUnit(const std::string& unit);
    /// How many points each of the visible clouds may show.
    std::map<int, unsigned long long> Shares(const Drawing& drawing);
    /// Brings all clouds to the request, those that are not at it yet. Returns a sentence for each
    /// of its entities, empty where that is shown as it should.
    std::vector<std::string> Show(const ViewRequest& request);
    std::string ShowOne(const ViewRequest& request, const Entity& entity,
                        unsigned long long budget);
    /// What an entity shows. \param problem what Show has returned for it
    ShownEntity FactsOf(const Entity& entity, std::string problem);

    Plugin plugin_;
    Palette palette_;
    OdDbDatabase drawing_;
    std::map<int, std::unique_ptr<PointCloud>> clouds_;
    /// That of the last update; its visible entities, in their order, are what is fetched.
    ViewRequest request_;
};

}  // namespace vpc::viewer
