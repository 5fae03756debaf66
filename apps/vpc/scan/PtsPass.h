#pragma once

#include "vpc/scan/TextScanPass.h"

namespace vpc {

/// One reading of a PTS text: blocks of a count line and as many points' lines, or one block
/// without a count.
class PtsPass : public TextScanPass {
public:
    using TextScanPass::TextScanPass;

private:
    void TakeValues() override;
    void End() override { EndBlock(); }
    void LookAtColours();
    void BeginBlock();
    void EndBlock();
    void WritePoint();

    /// Where the block's count stands; 0 before the first one.
    unsigned long long claimLine_ = 0;
    unsigned long long claimed_ = 0;
    /// Points of the block so far.
    unsigned long long held_ = 0;
};

}  // namespace vpc
