#pragma once

#include <vector>

class VpcDiskNode;

// A node list kept as a binary heap whose front is the node of least density: the one that a view
// gains most from refining.

/// Whether `a` is denser than `b`.
bool sortNodesToDiagonalInv(const VpcDiskNode* a, const VpcDiskNode* b);

/// Adds `node` to the heap.
void PushNode(std::vector<VpcDiskNode*>& list, VpcDiskNode* node);
/// Removes the node at `index`: the last one takes its place and sinks to where it belongs below
/// it. An index that the list does not have changes nothing.
void PopNode(std::vector<VpcDiskNode*>& list, int index);
