// The buffer's invariant, checked after every fill and shift in builds with asserts; nothing in a release.
//
// A shift is held against the picture that stood before it, not against the whole map: map pixels that a
// script has changed since the last fill may rightly still be shown.
#pragma once

#include <cstdint>

namespace scroll2d {

#ifdef NDEBUG

inline void check_filled(std::int32_t) {}

class ShiftCheck {
  public:
    explicit ShiftCheck(std::int32_t) {}
    void moved_by(std::int64_t, std::int64_t) const {}
};

#else

// Asserts that every view pixel of a plane of the current scroll is its map pixel.
void check_filled(std::int32_t plane);

// Takes a plane's picture, and asserts after a shift that what stayed in view is still there and that what
// came into view is the map's. Views too large for its memory go unchecked.
class ShiftCheck {
  public:
    explicit ShiftCheck(std::int32_t plane);
    void moved_by(std::int64_t dx, std::int64_t dy) const;

  private:
    std::int32_t plane_;
    bool taken_;
};

#endif

}  // namespace scroll2d
