#include "view/NodeHeap.h"

#include <algorithm>
#include <utility>

#include "tree/disk/VpcDiskNode.h"

bool sortNodesToDiagonalInv(const VpcDiskNode* a, const VpcDiskNode* b) {
    return a->density > b->density;
}

void PushNode(std::vector<VpcDiskNode*>& list, VpcDiskNode* node) {
    list.push_back(node);
    std::push_heap(list.begin(), list.end(), sortNodesToDiagonalInv);
}

void PopNode(std::vector<VpcDiskNode*>& list, int index) {
    if (index < 0 || static_cast<std::size_t>(index) >= list.size()) return;
    auto at = static_cast<std::size_t>(index);
    std::swap(list[at], list.back());
    list.pop_back();
    // Only downwards: unless `index` was the front, the parents of this place may now be denser.
    for (std::size_t child = 2 * at + 1; child < list.size(); child = 2 * at + 1) {
        if (child + 1 < list.size() && sortNodesToDiagonalInv(list[child], list[child + 1]))
            ++child;
        if (!sortNodesToDiagonalInv(list[at], list[child])) return;
        std::swap(list[at], list[child]);
        at = child;
    }
}
