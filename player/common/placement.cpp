#include "player/common/placement.h"

#include <algorithm>
#include <cstdint>

namespace player {
namespace {

int share(int value, int numerator, int denominator) {
    return std::max(1, static_cast<int>(std::int64_t{value} * numerator / denominator));
}

}  // namespace

Placement place_screen(int width, int height, const Area& room) {
    const int room_width = std::max(1, room.width), room_height = std::max(1, room.height);
    Placement result;
    result.scale = std::min(room_width / width, room_height / height);
    result.shrunk = result.scale < 1;
    if (result.shrunk) {
        result.scale = 1;
        // The tighter side decides.
        const bool by_width = std::int64_t{room_width} * height < std::int64_t{room_height} * width;
        result.at.width = by_width ? room_width : share(width, room_height, height);
        result.at.height = by_width ? share(height, room_width, width) : room_height;
    } else {
        result.at.width = width * result.scale;
        result.at.height = height * result.scale;
    }
    result.at.x = room.x + (room_width - result.at.width) / 2;
    result.at.y = room.y + (room_height - result.at.height) / 2;
    return result;
}

}  // namespace player
