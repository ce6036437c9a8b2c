// The host's routines that the module calls or hands on while it draws, replaced by ones that keep what they
// see.
#pragma once

#include <vector>

#include "tests/model/model.h"

namespace model {

[[nodiscard]] Entry words_of(const __RVKBlit2D__& entry);

// A sprite routine fit for any numbers: the graphic, keyed, with its top left at the position, clipped. A
// graphic without pixels is none.
void stamp(const Entry& entry, Surface graphic, Surface target);

// A process whose word 49 is this is drawn by a routine that then stops the scroll of its word 48.
constexpr std::int32_t kStopsScroll = 0x570B;

// All six sprite routines stamp, and every sort adds to `passes`.
void replace_routines(Graphics2DInterface& graphics);
extern std::vector<std::vector<Entry>> passes;  // the module's list as it stood at each sort

}  // namespace model
