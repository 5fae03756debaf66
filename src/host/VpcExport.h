#pragma once

/// Marks what the plug-in exports; everything else of the library is compiled hidden.
#define VPC_EXPORT __attribute__((visibility("default")))
