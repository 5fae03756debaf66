#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "viewer/document/Entity.h"
#include "viewer/drawing/PointVertex.h"
#include "viewer/engine/Property.h"
#include "viewer/engine/ViewRequest.h"
#include "viewer/tools/Pick.h"

namespace vpc::viewer {

/// The plug-in, on a thread of its own: one thread calls it, from loading to unloading. The
/// functions return at once; what they ask for is done in their order, but that fetching comes
/// first and opening last, so that the view goes on while files are loaded. As the window asks for
/// the next view only when it has the one before, files come in between. The calls that the
/// functions get are brought to the window's thread by `post`.
class Engine {
public:
    /// Has a call made on the window's thread, later. May be called from any thread.
    using Post = std::function<void(std::function<void()>)>;
    /// A sentence for the user; empty where all went well.
    using Problem = std::string;

    /// \param pluginFile path of libvpc_plugin.so
    /// \param failed     gets a sentence when the plug-in cannot be loaded; nothing works then
    Engine(std::string pluginFile, Post post, std::function<void(const Problem&)> failed);
    /// Waits for the call that the plug-in is in; what waits behind it is dropped, and answers that
    /// are on their way do nothing any more.
    ~Engine();
    Engine(const Engine&) = delete;
    Engine& operator=(const Engine&) = delete;

    /// Loads a tree file. `entity.id` and `entity.file` count; a placement and the rest as well
    /// where `asGiven` says so (a session), otherwise they are chosen (a scale for the file's
    /// unit).
    /// \param unit the drawing's; empty as long as it has none, which then becomes the file's
    struct Opened {
        Entity entity;
        Problem problem;  ///< then nothing was loaded
        Box box;          ///< around the points, in their own frame
        unsigned long long points = 0;
        std::string unit;  ///< of the points' coordinates, as the palette names it
        std::string drawingUnit;
    };
    void Open(const Entity& entity, bool asGiven, const std::string& unit,
              std::function<void(const Opened&)> done);
    void Close(int id);

    /// Chooses points for a view. A request that waits is replaced by a newer one and never
    /// answered; `done` of an answered one may come after a newer request was made.
    void Update(const ViewRequest& request, std::function<void(const ViewResult&)> done);
    /// Writes the points of the last update into `memory`, which must be as large as that update's
    /// `shown` and must stay until `done` or the engine's end. `done` gets how many were written:
    /// fewer where another update came between.
    void Fetch(std::span<PointVertex> memory, const glm::dvec3& origin,
               std::function<void(std::size_t)> done);
    /// The point at a pixel of the last update's view, as the plug-in's snap finds it; the nearest
    /// one where several entities have one there.
    void PickAt(const ViewCamera& camera, const draw::ImageSize& size, const glm::ivec2& pixel,
                std::function<void(const std::optional<Pick>&)> done);

    /// What the palette shows of an entity.
    void Properties(int id, std::function<void(const std::vector<Property>&)> done);
    /// Brings the host's entity to the state of `entity` and hands values to the palette's
    /// extension, one after the other. `done` gets the entity as it is then, and a sentence where a
    /// value was not taken; those after it are left out.
    void SetProperties(const Entity& entity, const std::vector<PropertyValue>& values,
                       std::function<void(const Entity&, const Problem&)> done);

    /// Whether a call waits, is being made or has an answer on the way to the window's thread.
    bool IsBusy() const;

private:
    class Worker;
    std::unique_ptr<Worker> worker_;
};

}  // namespace vpc::viewer
