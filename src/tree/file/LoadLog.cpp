#include "tree/file/LoadLog.h"

#include <wx/translation.h>

#include "core/util/VpcLogger.h"

namespace vpc {

void logLoadFailure(const IoError& failure) {
    VpcLogger::Instance()->Add(_("The point tree file ") + failure.Message());
}

}  // namespace vpc
