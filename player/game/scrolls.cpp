#include "player/game/scrolls.h"

#include "host/engine.h"
#include "module/contract/script_numbers.h"

namespace player {

std::set<int> running_scrolls(host::Engine& engine) {
    std::set<int> running;
    const ScrollSystemInterface* services = engine.services();
    if (services == nullptr) return running;
    for (int number = 0; number < scroll2d::scroll_count; ++number)
        if (services->GetProcessInScroll(number, 0) != 0) running.insert(number);
    return running;
}

}  // namespace player
