// The scrolls of the loaded module, as far as the player has to know of them.
#pragma once

#include <set>

namespace host {
class Engine;
}

namespace player {

// Their numbers; none where no module offers scrolls.
std::set<int> running_scrolls(host::Engine& engine);

}  // namespace player
