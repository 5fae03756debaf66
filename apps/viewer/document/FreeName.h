#pragma once

#include <algorithm>
#include <string>
#include <vector>

namespace vpc::viewer {

/// "Section 1", or the next number that no item has. \param items have a `name`
template <class Item>
std::string freeName(const std::string& kind, const std::vector<Item>& items) {
    for (std::size_t number = 1;; ++number) {
        std::string name = kind + " " + std::to_string(number);
        const auto hasName = [&name](const Item& item) { return item.name == name; };
        if (std::none_of(items.begin(), items.end(), hasName)) return name;
    }
}

}  // namespace vpc::viewer
