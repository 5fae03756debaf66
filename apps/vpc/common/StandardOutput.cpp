#include "vpc/common/StandardOutput.h"

#include <cerrno>
#include <cstdio>
#include <system_error>

#include "vpc/common/Command.h"

namespace vpc {

void writeStandardOutput(std::string_view bytes) {
    if (std::fwrite(bytes.data(), 1, bytes.size(), stdout) == bytes.size()) return;
    const int reason = errno;
    if (reason == EPIPE)
        throw CommandError("the program that reads the output has ended before all was written");
    throw CommandError("standard output cannot be written (" +
                       std::generic_category().message(reason) +
                       "); make room or write to a file elsewhere");
}

}  // namespace vpc
