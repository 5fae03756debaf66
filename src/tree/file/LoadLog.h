#pragma once

#include "core/util/IoError.h"

namespace vpc {

/// Writes into the log why a point tree file is not loaded.
void logLoadFailure(const IoError& failure);

/// Runs `load`. Where it throws IoError, writes into the log why.
/// \return whether it ended without IoError
template <class Load>
[[nodiscard]] bool loadOrLog(const Load& load) {
    try {
        load();
        return true;
    } catch (const IoError& failure) {
        logLoadFailure(failure);
        return false;
    }
}

}  // namespace vpc
