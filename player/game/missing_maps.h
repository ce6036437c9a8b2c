// Pictures that processes show and nobody has loaded: the engine skips such a process without a word.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <utility>

namespace host {
class Engine;
}

namespace player {

// How many processes show each (file, graph).
using MissingMaps = std::map<std::pair<std::int32_t, std::int32_t>, int>;

// Of the living and visible processes of a coordinate type; of one scroll's sprites when its number is given.
MissingMaps missing_maps(host::Engine& engine, std::int32_t coordinate_type, std::optional<int> scroll = {});

}  // namespace player
