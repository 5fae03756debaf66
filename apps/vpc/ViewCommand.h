#pragma once

#include "CameraOptions.h"
#include "Command.h"
#include "ViewOptions.h"
#include "platform/OdGeMatrix3d.h"

namespace vpc {

class LoadedPointSet;
struct ViewCuts;

/// `vpc view`: shows a tree file as a host would, into files.
class ViewCommand : public Command {
public:
    explicit ViewCommand(CLI::App& app);
    int Run() override;

private:
    void DeclareSelection();
    void DeclareOutput();
    void CheckOutput(const std::string& output) const;
    void SetUp(LoadedPointSet& pointSet, const ViewCuts& cuts, const OdGeMatrix3d& matrix) const;
    void WriteImage(const LoadedPointSet& pointSet, const ViewCamera& camera) const;
    void WritePoints(const LoadedPointSet& pointSet) const;
    /// Names a written file, unless the output is to be JSON alone.
    void TellWritten(const std::string& file, const std::string& what) const;

    CameraOptions camera_;
    ViewOptions options_;
    Viewport size_;
};

}  // namespace vpc
