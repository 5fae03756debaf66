#pragma once

#include <string>

namespace vpc {

// What keeps a command from writing over a file that may be dear to somebody. All of these throw
// CommandError. An empty file may always be replaced; what is no regular file never is
// (ReplacementFile sees to that).

/// Where a file has the output's name already: for commands that write points, since it may be
/// somebody's only scan. The advice is --force.
void requireNoFile(const std::string& output);
/// Where a file has the name and is no picture.
void requirePictureOrNothing(const std::string& output);
/// Where a file has the name, which has to be a tree file's, and is a scan or a picture all the
/// same.
void requireNoScan(const std::string& output);
/// Where a file has the name of a log and does not begin as a log does, with "[".
void requireLogOrNothing(const std::string& log);
/// Where `output` is the very file `input`, under whatever name. `whatInputIs` follows "is", as
/// "the tree file itself".
void requireOtherFile(const std::string& output, const std::string& input,
                      const std::string& whatInputIs);

}  // namespace vpc
