#pragma once

#include <cstring>

namespace vpc {

/// The value of type T at `bytes`, which need not be aligned: it may lie in the middle of a record.
template <class T>
T valueAt(const char* bytes) {
    T value;
    std::memcpy(&value, bytes, sizeof value);
    return value;
}

}  // namespace vpc
