#pragma once

#include <array>

#include "vpc/scan/TextScanPass.h"

namespace vpc {

/// One reading of a PTX text: grids of a header of ten lines and a line for every cell.
class PtxPass : public TextScanPass {
public:
    using TextScanPass::TextScanPass;

private:
    void TakeValues() override;
    void End() override;
    void TakeHeader();
    bool TakeSize();
    void EndScan();
    bool ColoursAreWhole();
    void WriteCell();

    /// Lines of the header so far.
    std::size_t headerLines_ = 0;
    /// Values of every cell's line; 0 before the first one.
    std::size_t inLine_ = 0;
    /// Columns and rows.
    std::array<unsigned long long, 2> size_{};
    /// The header's other lines, written plainly.
    std::string pose_;
    /// Where the header begins.
    unsigned long long claimLine_ = 0;
    /// Cells so far.
    unsigned long long held_ = 0;
};

}  // namespace vpc
