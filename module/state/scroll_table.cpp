#include "module/state/scroll_table.h"

#include "module/state/host_lookups.h"

HostRuntime* rvkre;

namespace scroll2d {

ScrollRecord scroll_sys[scroll_count];

std::int32_t scroll_num;
ScrollRecord* pscroll;
ScrollScriptStruct* _scroll_;
std::int32_t _scroll_offset_;

FileRecord* pfpg_scroll2D;
MapEntry* pfpgmap1_scroll2D;
MapEntry* pfpgmap2_scroll2D;
MapEntry* pfpgmap_scroll2D;
__RVKRegion__* pregion_scroll2D;
std::int32_t max_graph_scroll2D;
std::int32_t max_fpg_scroll2D;
std::int32_t max_region_scroll2D;

void* scroll2D_blitlist;
ScrollSystemInterface scrollSystem;

void select_scroll(std::int32_t number) {
    scroll_num = number;
    pscroll = &scroll_sys[number];
    _scroll_ = reinterpret_cast<ScrollScriptStruct*>(rvkre->GlobalData + _scroll_offset_) + number;
}

}  // namespace scroll2d
