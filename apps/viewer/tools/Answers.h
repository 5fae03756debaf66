#pragma once

#include <functional>
#include <memory>
#include <utility>

namespace vpc::viewer {

/// Lets answers that come later through to their tool, unless it is gone or wants them no more.
class Answers {
public:
    template <class Answer>
    std::function<void(const Answer&)> Expect(std::function<void(const Answer&)> then) const {
        return
            [wanted = std::weak_ptr<char>(wanted_), then = std::move(then)](const Answer& answer) {
                if (!wanted.expired()) then(answer);
            };
    }
    /// What was asked for until now is wanted no more.
    void Drop() { wanted_ = std::make_shared<char>(); }

private:
    std::shared_ptr<char> wanted_ = std::make_shared<char>();
};

}  // namespace vpc::viewer
