#pragma once

#include <string>

#include "viewer/document/Session.h"

namespace vpc::viewer {

/// Writes the file beside its place and then renames it, so that an older one stays until the new
/// one is whole. \throws SessionError
void saveSession(const Session& session, const std::string& file);
/// \throws SessionError
Session openSession(const std::string& file);

}  // namespace vpc::viewer
