#include <algorithm>
#include <cstdint>

#include "module/contract/numbers.h"
#include "module/render/render.h"
#include "module/scroll/view.h"
#include "module/state/host_lookups.h"
#include "module/state/routine_pointers.h"
#include "module/state/scroll_table.h"

namespace scroll2d {

std::int32_t num_blits_scroll2D;
__RVKBlit2D__** pBlit2DZOrder;

namespace {

constexpr std::int32_t full_turn = 360000;  // thousandths of a degree
constexpr std::int32_t mirrored = 1;        // bit of ProcessLocals::flags

bool is_alive_and_shown(const ProcessLocals& p) {
    const bool alive = p.status == 2 || p.status >= 4;
    return alive && mask_shows(p.scroll_mask, scroll_num) && p.word33 > 0;
}

// Chooses the graphic of a process by its angle from its graph table: {count, code, code, ...}, a negative
// code meaning its absolute value mirrored. False when the count is not 1 to 256. Two integer divisions, each
// dropping its remainder: nothing simpler gives the same direction at every boundary.
bool choose_graph_by_angle(ProcessLocals& p) {
    const std::int32_t count = p.graph_table[0];
    if (count < 1 || count > 256) return false;

    const std::int32_t angle = floor_mod(p.angle, full_turn);
    if (angle != p.angle) p.angle = angle;
    p.flags &= 0xfe;  // clears the mirror bit, and every bit above bit 7
    std::int32_t direction = (full_turn / (2 * count) + angle) * count / full_turn;
    if (direction >= count) direction = 0;

    const std::int32_t code = p.graph_table[1 + direction];
    p.graph = code < 0 ? wrap32(-std::int64_t{code}) : code;
    if (code < 0) p.flags |= mirrored;
    return true;
}

// The host may stop scrolls from any slot, and with the scroll of this pass its processes end. So nothing of
// a process is read or written after a call into the host before it is known that the scroll still runs;
// while it does, what it shows lives.

// The graphic of a process, or null when it has none that can be drawn.
//   writes: max_graph_scroll2D, pfpg_scroll2D, pfpgmap_scroll2D
MapRecord* look_up_graphic(const ProcessLocals& p) {
    const std::int32_t file = p.file;
    const std::int32_t graph = p.graph;
    max_graph_scroll2D = graph_limit(file);
    if (graph <= 0 || graph >= max_graph_scroll2D) return nullptr;
    pfpg_scroll2D = rvkre->Graphics->GetFile(file);
    pfpgmap_scroll2D = rvkre->Graphics->GetMap(file, graph);
    if (pfpg_scroll2D == nullptr || pfpg_scroll2D->word1 == 0) return nullptr;
    if (pfpgmap_scroll2D == nullptr || pfpgmap_scroll2D->word0 == 0) return nullptr;
    return pfpgmap_scroll2D->bitmap;
}

// Clips an entry to the scroll's view, and to its process's region when it has one. The region is taken in
// world coordinates: it moves with the scroll.
void clip(__RVKBlit2D__& entry) {
    const ScrollRecord& r = *pscroll;
    const std::int64_t right = std::int64_t{r.dest_x} + r.width - 1;
    const std::int64_t bottom = std::int64_t{r.dest_y} + r.height - 1;
    entry.has_clip = 1;
    entry.clip_x = r.dest_x;
    entry.clip_x2 = saturate32(right);
    entry.clip_y = r.dest_y;
    entry.clip_y2 = saturate32(bottom);

    const std::int32_t number = entry.region;
    if (number < 1 || number >= max_region_scroll2D) return;
    if (rvkre->Graphics->RegionDefined(number) == 0) return;
    const __RVKRegion__* const region = pregion_scroll2D = rvkre->Graphics->Regions + number;
    entry.clip_x = saturate32(std::max<std::int64_t>(r.dest_x, region->x + to_destination_x(r)));
    entry.clip_x2 = saturate32(std::min(right, region->x2 + to_destination_x(r)));
    entry.clip_y = saturate32(std::max<std::int64_t>(r.dest_y, region->y + to_destination_y(r)));
    entry.clip_y2 = saturate32(std::min(bottom, region->y2 + to_destination_y(r)));
}

// The host's routine for an entry. A process drawn from a graph table is never rotated.
BlitRoutine choose_sprite_routine(const __RVKBlit2D__& entry) {
    const Graphics2DInterface& g = *rvkre->Graphics;
    const bool rotated = entry.angle != 0 && entry.graph_table == nullptr;
    const bool unscaled = entry.size == 100 && entry.size_x == 100 && entry.size_y == 100;
    const bool plain = entry.word25 == 0 && entry.word26 == 0;
    if (!plain) return rotated ? g.BlitSpriteRotatedGeneral : g.BlitSpriteGeneral;
    if (unscaled) return rotated ? g.BlitSpriteRotated : g.BlitSprite;
    return rotated ? g.BlitSpriteRotatedScaled : g.BlitSpriteScaled;
}

void add_process_entry(ProcessLocals& p, MapRecord* graphic) {
    const ScrollRecord& r = *pscroll;
    pbltScroll2D = rvkre->Graphics->NewBlit();
    if (pbltScroll2D == nullptr || pscroll->active == 0) return;
    __RVKBlit2D__& entry = *pbltScroll2D;
    entry.owner = &p;
    entry.graph_table = p.graph_table;
    entry.z = p.z;
    entry.region = p.region;
    entry.resolution = p.resolution;
    entry.word20 = p.word38;
    entry.angle = p.angle % full_turn;
    entry.size = p.size;
    entry.size_x = p.size_x;
    entry.size_y = p.size_y;
    entry.word25 = p.word43;
    entry.word26 = p.word44;
    entry.flags = p.flags;
    entry.word28 = p.word46;
    entry.word29 = p.word47;
    entry.word30 = p.word48;
    entry.word31 = p.word49;
    entry.bitmap = graphic;
    entry.target = r.dest_map;
    entry.pos_x = wrap32(whole_pixels(p.x, p.resolution) + to_destination_x(r));
    entry.pos_y = wrap32(whole_pixels(p.y, p.resolution) + to_destination_y(r));
    entry.draw = choose_sprite_routine(entry);
    clip(entry);
}

// A process that reaches the search for its graphic is marked as handled, drawn or not.
void collect_process(ProcessLocals& p) {
    if (!is_alive_and_shown(p)) return;
    if (p.file < 0 || p.file >= max_fpg_scroll2D) return;
    if (p.graph_table != nullptr && !choose_graph_by_angle(p)) return;
    MapRecord* const graphic = look_up_graphic(p);
    if (graphic != nullptr && pscroll->active != 0) add_process_entry(p, graphic);
    if (pscroll->active != 0) p.scroll_mark = 1;
}

void add_layer_entry(std::int32_t z) {
    pbltScroll2D = rvkre->Graphics->NewBlit();
    if (pbltScroll2D == nullptr) return;
    pbltScroll2D->z = z;
    pbltScroll2D->draw = draw_scroll_layer_plane1;
}

// Draws the entries of the current list in the host's order.
void draw_entries() {
    const Graphics2DInterface& g = *rvkre->Graphics;
    g.SortBlitList();
    pBlit2DZOrder = g.GetBlitList()->zorder;
    for (std::int32_t i = 0; i < num_blits_scroll2D; ++i, ++pBlit2DZOrder) {
        __RVKBlit2D__* const entry = *pBlit2DZOrder;
        entry->draw(entry);
    }
}

}  // namespace

void draw_scroll_sprites(const __RVKBlit2D__* scroll_entry) {
    const Graphics2DInterface& g = *rvkre->Graphics;
    if (g.SelectBlitList(scroll2D_blitlist) == 0) return;
    max_fpg_scroll2D = g.FileCount();
    max_region_scroll2D = g.RegionCount();
    if (is_layer_mode(pscroll->mode)) add_layer_entry(scroll_entry->z);
    for (ProcessNode* node = rvkre->Processes->FirstProcessOfType(c_scroll); node != nullptr;
         node = pscroll->active != 0 ? node->next : nullptr) {
        collect_process(*node->data);
    }
    num_blits_scroll2D = g.BlitListCount();
    if (num_blits_scroll2D != 0 && pscroll->active != 0) draw_entries();
    g.ClearBlitList();
    g.SelectBlitList(nullptr);
}

}  // namespace scroll2d
