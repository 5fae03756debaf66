#pragma once

#include <cstring>

namespace vpc {

/// The value of type T that begins at `bytes`, wherever that is: in the middle of a record, say.
template <class T>
T valueAt(const char* bytes) {
    T value;
    std::memcpy(&value, bytes, sizeof value);
    return value;
}

}  // namespace vpc
