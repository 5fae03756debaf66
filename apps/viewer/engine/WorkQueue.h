#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>

namespace vpc::viewer {

/// A thread that does one task after the other.
class WorkQueue {
public:
    using Task = std::function<void()>;
    /// A task overtakes those that wait with a lower urgency.
    enum class Urgency { Low, Usual, High };

    /// \param first, last done on the thread before and after everything else, whatever is dropped
    WorkQueue(Task first, Task last);
    /// Waits for the task that is being done; what waits behind it is dropped.
    ~WorkQueue();
    WorkQueue(const WorkQueue&) = delete;
    WorkQueue& operator=(const WorkQueue&) = delete;

    void Add(Task task, Urgency urgency = Urgency::Usual);
    /// Takes the place of the task of this kind that waits, if there is one. Of usual urgency.
    void AddOrReplace(Task task);

private:
    struct Waiting {
        Task task;
        Urgency urgency = Urgency::Usual;
        bool isReplaceable = false;
    };

    /// Under the lock.
    void Insert(Waiting task);

    void Work(Task first, const Task& last);
    /// Waits for the next task; an empty one at the end.
    Task Next();

    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<Waiting> waiting_;
    bool isEnding_ = false;
    std::thread thread_;
};

}  // namespace vpc::viewer
