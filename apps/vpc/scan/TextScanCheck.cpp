#include "vpc/scan/TextScanCheck.h"

#include <memory>

#include "vpc/scan/PtsPass.h"
#include "vpc/scan/PtxPass.h"

namespace vpc {

TextScanAccount TextScanCheck::Run(const std::string& file, const TextDialect& dialect, Rules rules,
                                   TextScanCopy* copy, const Progress& progress) {
    std::unique_ptr<TextScanPass> pass;
    if (dialect.format == DataFormat_PTX)
        pass = std::make_unique<PtxPass>(file, dialect, rules, copy);
    else
        pass = std::make_unique<PtsPass>(file, dialect, rules, copy);
    return pass->Run(progress);
}

}  // namespace vpc
