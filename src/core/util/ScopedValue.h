#pragma once

#include <utility>

namespace vpc {

/// Gives a variable another value for the lifetime of this object.
template <class T>
class ScopedValue {
public:
    ScopedValue(T& variable, T value)
        : variable_(variable), before_(std::exchange(variable, std::move(value))) {}
    ~ScopedValue() { variable_ = std::move(before_); }
    ScopedValue(const ScopedValue&) = delete;
    ScopedValue& operator=(const ScopedValue&) = delete;

private:
    T& variable_;
    T before_;
};

}  // namespace vpc
