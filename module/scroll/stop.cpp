#include <cstdint>

#include "module/buffer/buffer.h"
#include "module/scroll/script_call.h"
#include "module/scroll/scroll.h"
#include "module/state/host_lookups.h"
#include "module/state/scroll_table.h"

namespace scroll2d {
namespace {

bool shown_by_a_running_scroll(std::int32_t mask) {
    for (std::int32_t i = 0; i < scroll_count; ++i) {
        if (scroll_sys[i].active != 0 && mask_shows(mask, i)) return true;
    }
    return false;
}

// Ends the processes that live in scroll coordinates and that no running scroll shows.
void delete_scroll_processes() {
    ProcessNode* node = rvkre->Processes->FirstProcessOfType(c_scroll);
    while (node != nullptr) {
        ProcessLocals* const process = node->data;
        node =
            shown_by_a_running_scroll(process->scroll_mask) ? node->next : rvkre->DeleteProcess(process, 2);
    }
}

// Frees the buffers of a scroll that runs, and makes it idle.
void release_scroll(std::int32_t number) {
    ScrollRecord& r = scroll_sys[number];
    if (r.active == 0) return;
    free_buffers(r);
    r.active = 0;
    r.map1_pixels = nullptr;
    r.map2_pixels = nullptr;
}

void reset_script_element(std::int32_t number) {
    select_scroll(number);
    *_scroll_ = script_defaults;
}

// What a script's stop does to one scroll.
Served stop() {
    const bool ran = pscroll->active != 0;
    if (ran) stop_scroll(scroll_num);
    reset_script_element(scroll_num);
    return ran ? Served::counted : Served::left_out;
}

}  // namespace

void stop_scroll(std::int32_t number) {
    release_scroll(number);
    delete_scroll_processes();
}

void StopScroll(std::int32_t number) {
    if (!is_scroll_number(number)) return;
    const SelectionKept kept;
    release_scroll(number);
    reset_script_element(number);
    delete_scroll_processes();
}

void StopAllScroll() {
    const SelectionKept kept;
    for (std::int32_t i = scroll_count - 1; i >= 0; --i) {
        release_scroll(i);
        reset_script_element(i);
    }
    delete_scroll_processes();
}

}  // namespace scroll2d

std::int32_t RVK_scroll_stop() {
    return scroll2d::serve_scrolls("SCROLL_STOP", scroll2d::stop);
}
