#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "vpc/common/Command.h"

namespace vpc {

class SampleWriter;

/// `vpc sample`: writes a made-up scan.
class SampleCommand : public Command {
public:
    explicit SampleCommand(CLI::App& app);
    int Run() override;

private:
    std::unique_ptr<SampleWriter> MakeWriter() const;
    [[noreturn]] void RefuseAsNoLas(const std::string& option) const;

    std::string output_;
    unsigned long long points_ = 1000000;
    std::uint64_t seed_ = 1;
    /// LAS point format; 0 where the user names none.
    int format_ = 0;
    std::string order_ = "flight";
    bool force_ = false;
};

}  // namespace vpc
