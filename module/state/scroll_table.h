// The ten scrolls, and the globals by which routines address the current one.
//
// Selecting scroll n means scroll_num = n, pscroll = its record and _scroll_ = its script element, computed
// afresh from the host's data, since the host may move its global data between two calls. The module runs on
// the host's one thread. No routine is re-entrant, but a host may stop scrolls from any of its slots.
//
// All the module's state is what the headers of this folder declare; scroll_table.cpp owns it.
#pragma once

#include <cstdint>

#include "module/contract/script_numbers.h"
#include "module/state/script_element.h"
#include "module/state/scroll_record.h"

namespace scroll2d {

extern ScrollRecord scroll_sys[scroll_count];

// The current scroll.
extern std::int32_t scroll_num;
extern ScrollRecord* pscroll;
extern ScrollScriptStruct* _scroll_;
extern std::int32_t _scroll_offset_;  // byte offset of scroll[0] in the host's global data

// Makes a scroll the current one.   writes: scroll_num, pscroll, _scroll_
void select_scroll(std::int32_t number);

// Selects, when it goes, the scroll that was current before. An entry point that a host may call from one of
// its slots holds one, so that whatever called the slot goes on with its own scroll.
class SelectionKept {
  public:
    SelectionKept() = default;
    SelectionKept(const SelectionKept&) = delete;
    SelectionKept& operator=(const SelectionKept&) = delete;
    ~SelectionKept() { select_scroll(number_); }

  private:
    std::int32_t number_ = scroll_num;
};

constexpr bool is_scroll_number(std::int32_t number) {
    return static_cast<std::uint32_t>(number) < static_cast<std::uint32_t>(scroll_count);
}

// Whether a process with this scroll_mask is shown in a scroll: bit n stands for scroll n, 0 for every
// scroll.
constexpr bool mask_shows(std::int32_t mask, std::int32_t number) {
    return mask == 0 || (mask >> number & 1) != 0;
}

}  // namespace scroll2d
