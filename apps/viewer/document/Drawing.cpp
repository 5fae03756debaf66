#include "viewer/document/Drawing.h"

#include <algorithm>
#include <utility>

namespace vpc::viewer {

const Entity* Drawing::Find(int id) const {
    const auto found = std::find_if(entities.begin(), entities.end(),
                                    [id](const Entity& entity) { return entity.id == id; });
    return found == entities.end() ? nullptr : &*found;
}

Entity* Drawing::Find(int id) {
    return const_cast<Entity*>(std::as_const(*this).Find(id));
}

}  // namespace vpc::viewer
