#pragma once

#include <stdexcept>

namespace vpc::viewer {

/// What the user asked for cannot be done; `what()` is a sentence for the user.
class Refusal : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

}  // namespace vpc::viewer
