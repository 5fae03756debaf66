#include "viewer/engine/Engine.h"

#include <exception>
#include <utility>

#include "viewer/engine/HostDrawing.h"
#include "viewer/engine/WorkQueue.h"

namespace vpc::viewer {

class Engine::Worker {
public:
    Worker(std::string pluginFile, Post post, std::function<void(const Problem&)> failed)
        : post_(std::move(post)),
          queue_([this, file = std::move(pluginFile),
                  answer = Answering(std::move(failed))] { Load(file, answer); },
                 [this] { drawing_.reset(); }) {}

    /// Has `work` done with the drawing, unless there is none, and its result handed to `done`.
    template <class Work, class Result>
    void Add(Work work, std::function<void(const Result&)> done,
             WorkQueue::Urgency urgency = WorkQueue::Urgency::Usual) {
        queue_.Add(TaskOf(std::move(work), std::move(done)), urgency);
    }
    template <class Work, class Result>
    void AddOrReplace(Work work, std::function<void(const Result&)> done) {
        queue_.AddOrReplace(TaskOf(std::move(work), std::move(done)));
    }
    void Add(std::function<void(HostDrawing&)> work) {
        queue_.Add([this, work = std::move(work), busy = busy_] {
            if (drawing_) work(*drawing_);
        });
    }
    bool IsBusy() const { return busy_.use_count() > idleCount; }

private:
    static constexpr long idleCount = 1;

    /// A function that has `done` called on the window's thread, unless the engine is gone by then.
    /// The engine is busy until then.
    template <class Result>
    std::function<void(Result)> Answering(std::function<void(const Result&)> done) {
        return [this, done = std::move(done), busy = busy_](Result result) mutable {
            post_([done, busy = std::move(busy), alive = std::weak_ptr<void>(alive_),
                   result = std::move(result)]() mutable {
                busy.reset();
                if (!alive.expired()) done(result);
            });
        };
    }
    template <class Work, class Result>
    WorkQueue::Task TaskOf(Work work, std::function<void(const Result&)> done) {
        return [this, work = std::move(work), answer = Answering(std::move(done))]() mutable {
            if (drawing_) answer(work(*drawing_));
        };
    }
    void Load(const std::string& file, const std::function<void(Problem)>& fail) {
        try {
            drawing_ = std::make_unique<HostDrawing>(file);
        } catch (const std::exception& error) {
            fail(error.what());
        }
    }

    Post post_;
    /// Every call that waits, is being made or has an answer on the way holds one of these.
    std::shared_ptr<void> busy_ = std::make_shared<char>();
    /// Calls that are made after the engine's end find this gone.
    std::shared_ptr<void> alive_ = std::make_shared<char>();
    /// The queue's thread's. Null when the plug-in could not be loaded.
    std::unique_ptr<HostDrawing> drawing_;
    WorkQueue queue_;
};

Engine::Engine(std::string pluginFile, Post post, std::function<void(const Problem&)> failed)
    : worker_(std::make_unique<Worker>(std::move(pluginFile), std::move(post), std::move(failed))) {
}

Engine::~Engine() = default;

void Engine::Open(const Entity& entity, bool asGiven, const std::string& unit,
                  std::function<void(const Opened&)> done) {
    worker_->Add([entity, asGiven,
                  unit](HostDrawing& drawing) { return drawing.Open(entity, asGiven, unit); },
                 std::move(done), WorkQueue::Urgency::Low);
}

void Engine::Close(int id) {
    worker_->Add([id](HostDrawing& drawing) { drawing.Close(id); });
}

void Engine::Update(const ViewRequest& request, std::function<void(const ViewResult&)> done) {
    worker_->AddOrReplace([request](HostDrawing& drawing) { return drawing.Update(request); },
                          std::move(done));
}

void Engine::Fetch(std::span<PointVertex> memory, const glm::dvec3& origin,
                   std::function<void(std::size_t)> done) {
    worker_->Add([memory, origin](HostDrawing& drawing) { return drawing.Fetch(memory, origin); },
                 std::function<void(const std::size_t&)>(std::move(done)),
                 WorkQueue::Urgency::High);
}

void Engine::PickAt(const ViewCamera& camera, const draw::ImageSize& size, const glm::ivec2& pixel,
                    std::function<void(const std::optional<Pick>&)> done) {
    worker_->Add(
        [camera, size, pixel](HostDrawing& drawing) { return drawing.PickAt(camera, size, pixel); },
        std::move(done));
}

void Engine::Properties(int id, std::function<void(const std::vector<Property>&)> done) {
    worker_->Add([id](HostDrawing& drawing) { return drawing.Properties(id); }, std::move(done));
}

void Engine::SetProperties(const Entity& entity, const std::vector<PropertyValue>& values,
                           std::function<void(const Entity&, const Problem&)> done) {
    using Set = std::pair<Entity, Problem>;
    worker_->Add(
        [entity, values](HostDrawing& drawing) { return drawing.SetProperties(entity, values); },
        std::function<void(const Set&)>(
            [done = std::move(done)](const Set& set) { done(set.first, set.second); }));
}

bool Engine::IsBusy() const {
    return worker_->IsBusy();
}

}  // namespace vpc::viewer
