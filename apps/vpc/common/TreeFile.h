#pragma once

#include <memory>
#include <string>

#include "core/util/FileTools.h"
#include "platform/OdString.h"
#include "tree/file/PointTreeReader.h"
#include "vpc/common/Command.h"

namespace vpc {

/// Checks that a name given by the user can be that of a tree file: it ends with ".vpt" and can be
/// read. Throws CommandError otherwise.
void requireTreeFile(const std::string& file);

/// Opens a tree file for a command, as requireTreeFile does.
std::unique_ptr<PointTreeReader> openTreeFile(const std::string& file);

/// The same, and checks its version and its header. Throws CommandError unless it is a tree file of
/// the version that the library reads.
std::unique_ptr<PointTreeReader> openCurrentTreeFile(const std::string& file);

/// The host's form of a name in the system's encoding.
OdString hostString(const std::string& native);

/// A failure of the library as a sentence for the user. `advice` follows it, after a semicolon.
std::string sentence(const IoError& failure, const std::string& advice);

/// Runs `read` and gives what it gives. Where it throws IoError, throws CommandError with `advice`.
template <class Read>
auto advising(const std::string& advice, const Read& read) {
    try {
        return read();
    } catch (const IoError& failure) {
        throw CommandError(sentence(failure, advice));
    }
}

}  // namespace vpc
