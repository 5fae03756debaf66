#pragma once

#include <optional>
#include <string>
#include <vector>

#include "viewer/preparing/PrepareJob.h"

class wxWindow;

namespace vpc::viewer {

class PrepareQueue;

/// Asks for scans and how they are to be prepared. Modal. Its title is "Prepare scans"; its
/// controls have names for tests: "dialog/Add scans", "dialog/Remove scans", "dialog/Target",
/// "dialog/Tree", "dialog/Unit", "dialog/Max points", "dialog/Prepare", "dialog/Cancel".
/// \param queue what the job is meant for; it knows the units and which files are taken
/// \param scans absolute paths, UTF-8; may be empty
/// \return the job, for PrepareQueue::Add; nothing where the user cancels
std::optional<PrepareJob> askForPrepareJob(wxWindow* parent, PrepareQueue& queue,
                                           const std::vector<std::string>& scans);

}  // namespace vpc::viewer
