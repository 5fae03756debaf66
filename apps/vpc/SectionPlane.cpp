#include "SectionPlane.h"

#include "CommandError.h"
#include "NumberList.h"

namespace vpc {

SectionPlane SectionPlane::Parse(const std::string& text) {
    const auto n = NumberList::Require(text, 6, "--section", "PX,PY,PZ,NX,NY,NZ");
    if (n[3] == 0.0 && n[4] == 0.0 && n[5] == 0.0)
        throw CommandUsageError("--section needs a normal, and 0,0,0 is none");
    return {{n[0], n[1], n[2]}, {n[3], n[4], n[5]}};
}

}  // namespace vpc
