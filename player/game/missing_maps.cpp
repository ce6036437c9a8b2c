#include "player/game/missing_maps.h"

#include "host/engine.h"

namespace player {

MissingMaps missing_maps(host::Engine& engine, std::int32_t coordinate_type, std::optional<int> scroll) {
    MissingMaps missing;
    for (const ProcessNode* node = engine.processes().first(coordinate_type); node != nullptr;
         node = node->next) {
        const ProcessLocals& p = *node->data;
        const bool elsewhere = scroll && p.scroll_mask != 0 && (p.scroll_mask >> *scroll & 1) == 0;
        if (!host::is_shown(p) || elsewhere || p.graph == 0) continue;
        if (engine.files().find_map(p.file, p.graph) != nullptr) continue;
        ++missing[{p.file, p.graph}];
    }
    return missing;
}

}  // namespace player
