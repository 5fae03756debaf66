#pragma once

#include <vector>

class VpcDiskNode;

// A list of nodes as a binary heap. Its front is the node of least density, whose refining improves
// a view most.

/// Whether `a` is denser than `b`.
bool sortNodesToDiagonalInv(const VpcDiskNode* a, const VpcDiskNode* b);

/// Adds `node` to the heap.
void PushNode(std::vector<VpcDiskNode*>& list, VpcDiskNode* node);
/// Removes the node at `index`. The last node takes its place and sinks from there to where it
/// belongs. An index beyond the list changes nothing.
void PopNode(std::vector<VpcDiskNode*>& list, int index);
