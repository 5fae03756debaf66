#include "core/util/IoError.h"

#include <system_error>

#include "core/util/FileTools.h"

namespace vpc {

namespace {

wxString withReason(const wxString& problem, int systemReason) {
    if (systemReason == 0) return problem;
    const std::string reason = std::generic_category().message(systemReason);
    return problem + " (" + FileTools::FromNativePath(reason) + ")";
}

}  // namespace

IoError::IoError(const wxString& file, const wxString& problem, int systemReason)
    : std::runtime_error(FileTools::ToNativePath(file + " " + withReason(problem, systemReason))),
      file_(file),
      problem_(withReason(problem, systemReason)),
      systemReason_(systemReason) {
}

}  // namespace vpc
