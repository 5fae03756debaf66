#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include <glm/geometric.hpp>

#include "support/TempFolder.h"
#include "viewer/engine/Engine.h"

namespace vpc::viewer::test {

/// Stands for the window's thread: calls wait here until the test makes them.
class Calls {
public:
    Engine::Post Post() {
        return [this](std::function<void()> call) {
            {
                const std::scoped_lock lock(gate_, mutex_);
                waiting_.push_back(std::move(call));
            }
            added_.notify_one();
        };
    }
    /// Lets Post wait, and with it the engine's thread.
    void Hold() { gate_.lock(); }
    void LetGo() { gate_.unlock(); }
    /// Waits until a call waits.
    void AwaitOne() {
        std::unique_lock lock(mutex_);
        added_.wait(lock, [this] { return !waiting_.empty(); });
    }
    /// Makes calls, as they come, until `condition` holds.
    template <class Condition>
    void RunUntil(const Condition& condition) {
        while (!condition()) {
            AwaitOne();
            std::unique_lock lock(mutex_);
            const auto call = std::move(waiting_.front());
            waiting_.pop_front();
            lock.unlock();
            call();
        }
    }

private:
    std::mutex gate_;
    std::mutex mutex_;
    std::condition_variable added_;
    std::deque<std::function<void()>> waiting_;
};

/// An engine, a drawing, and a folder for the files of one test.
class EngineTest : public testing::Test {
protected:
    EngineTest() { request.size = {800, 600}; }

    /// What the program prints.
    std::string RunProgram(const std::string& arguments) const {
        const std::string line = "cd " + folder.path().string() + " && " VPC_PROGRAM " " +
                                 arguments + " > out.txt 2> errors.txt";
        EXPECT_EQ(std::system(line.c_str()), 0) << line;
        return vpc::test::readBytes(folder.file("out.txt"));
    }
    /// A tree of a made-up landscape; returns its path.
    std::string MakeTree(int points, const std::string& unit = "m") const {
        const std::string name = unit + std::to_string(points);
        RunProgram("sample " + name + ".las --points " + std::to_string(points));
        RunProgram("prepare " + name + ".las --max-points 2000 -o " + name + ".vpt --unit " + unit);
        return folder.file(name + ".vpt");
    }

    Engine::Opened Open(int id, const std::string& file, const std::string& unit = {}) {
        Entity entity;
        entity.id = id;
        entity.file = file;
        return Ask<Engine::Opened>([&](auto done) { engine->Open(entity, false, unit, done); });
    }
    /// Opens a file, shows it in the drawing and looks at all of it, obliquely from above.
    Engine::Opened Show(const std::string& file) {
        const Engine::Opened opened = Open(static_cast<int>(Entities().size()) + 1, file);
        EXPECT_EQ(opened.problem, "");
        Entities().push_back(opened.entity);
        const glm::dvec3 ahead = glm::normalize(glm::dvec3(0.5, 0.8, -0.6));
        request.camera.target = opened.box.Centre();
        request.camera.eye = opened.box.Centre() - ahead * opened.box.Diagonal();
        request.camera.up = glm::cross(glm::normalize(glm::cross(ahead, {0, 0, 1})), ahead);
        request.camera.fieldHeight = opened.box.Diagonal();
        return opened;
    }
    std::vector<Entity>& Entities() { return request.drawing.entities; }

    ViewResult Update() {
        return Ask<ViewResult>([&](auto done) { engine->Update(request, done); });
    }
    unsigned long long CountShown() { return Update().shown; }
    /// The points that an update shows, relative to its origin.
    std::vector<PointVertex> Fetch(const ViewResult& view) {
        std::vector<PointVertex> points(view.shown);
        const auto count =
            Ask<std::size_t>([&](auto done) { engine->Fetch(points, view.origin, done); });
        EXPECT_EQ(count, points.size());
        return points;
    }
    std::optional<Pick> PickAt(const glm::ivec2& pixel) {
        return Ask<std::optional<Pick>>(
            [&](auto done) { engine->PickAt(request.camera, request.size, pixel, done); });
    }
    Property PropertyOf(int id, const std::string& name) {
        for (const Property& property :
             Ask<std::vector<Property>>([&](auto done) { engine->Properties(id, done); }))
            if (property.name == name) return property;
        ADD_FAILURE() << name;
        return {};
    }
    /// Sets a property and takes the entity over; returns the problem.
    std::string Set(int id, const std::string& name, const Property::Value& value) {
        const int property = PropertyOf(id, name).id;
        return Ask<std::string>([&](auto done) {
            engine->SetProperties(
                *request.drawing.Find(id), {{property, value}},
                [this, id, done](const Entity& entity, const std::string& problem) {
                    *request.drawing.Find(id) = entity;
                    done(problem);
                });
        });
    }
    /// Makes a request and returns the answer.
    template <class Answer, class Request>
    Answer Ask(const Request& ask) {
        std::optional<Answer> answer;
        ask([&answer](const Answer& given) { answer = given; });
        calls.RunUntil([&answer] { return answer.has_value(); });
        return *answer;
    }

    const vpc::test::TempFolder folder;
    ViewRequest request;
    Calls calls;
    std::unique_ptr<Engine> engine = std::make_unique<Engine>(
        VPC_PLUGIN, calls.Post(), [](const std::string& problem) { FAIL() << problem; });
};

}  // namespace vpc::viewer::test
