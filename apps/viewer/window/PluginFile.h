#pragma once

#include <string>

namespace vpc::viewer {

/// Where the plug-in that belongs to the program lies: beside it in a build, below the library
/// folder where it is installed. The place in a build where there is none at all, so that an error
/// can name it.
std::string findPlugin();

}  // namespace vpc::viewer
