#include "viewer/engine/WorkQueue.h"

#include <algorithm>
#include <utility>

namespace vpc::viewer {

WorkQueue::WorkQueue(Task first, Task last)
    : thread_([this, first = std::move(first), last = std::move(last)]() mutable {
          Work(std::move(first), last);
      }) {
}

WorkQueue::~WorkQueue() {
    {
        const std::lock_guard lock(mutex_);
        isEnding_ = true;
    }
    changed_.notify_one();
    thread_.join();
}

void WorkQueue::Insert(Waiting task) {
    const auto place =
        std::find_if(waiting_.begin(), waiting_.end(),
                     [&task](const Waiting& waiting) { return waiting.urgency < task.urgency; });
    waiting_.insert(place, std::move(task));
}

void WorkQueue::Add(Task task, Urgency urgency) {
    {
        const std::lock_guard lock(mutex_);
        Insert({std::move(task), urgency, false});
    }
    changed_.notify_one();
}

void WorkQueue::AddOrReplace(Task task) {
    {
        const std::lock_guard lock(mutex_);
        const auto found =
            std::find_if(waiting_.begin(), waiting_.end(),
                         [](const Waiting& waiting) { return waiting.isReplaceable; });
        if (found == waiting_.end())
            Insert({std::move(task), Urgency::Usual, true});
        else
            found->task.swap(task);  // the older one is freed outside of the lock
    }
    changed_.notify_one();
}

void WorkQueue::Work(Task first, const Task& last) {
    first();
    first = {};  // with whatever it holds
    while (const Task task = Next()) task();
    last();
}

WorkQueue::Task WorkQueue::Next() {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return isEnding_ || !waiting_.empty(); });
    if (isEnding_) return {};
    Task task = std::move(waiting_.front().task);
    waiting_.pop_front();
    return task;
}

}  // namespace vpc::viewer
