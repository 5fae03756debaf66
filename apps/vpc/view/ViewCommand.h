#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "vpc/common/Command.h"
#include "vpc/view/Camera.h"
#include "vpc/view/PictureOptions.h"
#include "vpc/view/ViewOptions.h"

namespace vpc {

class LoadedPointSet;

/// `vpc view`: shows a tree file as a host would, into files.
class ViewCommand : public Command {
public:
    explicit ViewCommand(CLI::App& app);
    int Run() override;

private:
    void DeclareOutput();
    Viewport PictureSize() const;
    void CheckOutputs() const;
    void WriteImage(const LoadedPointSet& pointSet, const ViewCamera& camera) const;
    void WritePoints(const LoadedPointSet& pointSet) const;
    void WritePoints(const LoadedPointSet& pointSet,
                     const std::function<void(std::string_view)>& write) const;
    bool PointsGoToStandardOutput() const;
    /// Tells the user of a written file, unless the output is JSON alone.
    void TellWritten(const std::string& file, const std::string& what) const;

    CameraOptions camera_;
    ViewOptions options_;
    std::string file_;
    PictureOptions picture_;
    std::string points_;
    bool report_ = false;
    bool force_ = false;
    std::string diagnostics_;
};

}  // namespace vpc
