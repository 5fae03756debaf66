#pragma once

#include <string>

#include "tree/disk/VpcDiskTreeQuerier.h"

namespace vpc {

/// Checks that a name given by the user can be that of a tree file: it ends with ".vpt" and can be
/// read. Throws CommandError otherwise.
void requireTreeFile(const std::string& file);

/// The host's form of a name in the system's encoding.
OdString hostString(const std::string& native);

}  // namespace vpc
