// A frame: backdrop, the module's hook, the host's own sprites, the drawing of the main list.
#include <algorithm>
#include <cstring>

#include "host/engine.h"

namespace host {

namespace {

constexpr std::int32_t full_turn = 360000;  // thousandths of a degree

// Takes the graphic for the direction that the process faces: direction i of n lies around i / n of a full
// turn. A negative code is a mirrored graphic. False for a table without a sensible count.
bool apply_graph_table(ProcessLocals& p) {
    if (p.graph_table == nullptr) return true;
    const std::int32_t count = p.graph_table[0];
    if (count < 1 || count > 256) return false;
    p.angle %= full_turn;
    if (p.angle < 0) p.angle += full_turn;
    const std::int32_t direction = (p.angle + full_turn / (2 * count)) * count / full_turn % count;
    const std::int32_t code = p.graph_table[1 + direction];
    p.flags = code < 0 ? p.flags | 1 : p.flags & ~1;
    p.graph = code < 0 ? static_cast<std::int32_t>(0U - static_cast<std::uint32_t>(code)) : code;
    return true;
}

SpriteNeeds needs_of(const ProcessLocals& p) {
    return {.rotated = p.angle % full_turn != 0 && p.graph_table == nullptr,
            .scaled = p.size != 100 || p.size_x != 100 || p.size_y != 100,
            .general = p.word43 != 0 || p.word44 != 0};
}

}  // namespace

void Engine::frame() {
    prepare_screen();
    run_hook(Hook::frame);
    add_screen_processes();
    draw_main_list();
}

void Engine::run_hook(Hook hook) {
    if (const auto function = hooks_[static_cast<std::size_t>(hook)]) function();
}

void Engine::set_backdrop(std::int32_t file, std::int32_t graph) {
    pixel_backdrop_.reset();
    map_backdrop_ = {file, graph};
}

void Engine::set_backdrop(std::uint32_t pixel) {
    map_backdrop_.reset();
    pixel_backdrop_ = pixel;
}

// A backdrop map that is gone, or was left at another depth, is left out.
void Engine::prepare_screen() {
    if (pixel_backdrop_) screen_->fill(*pixel_backdrop_);
    if (!map_backdrop_) return;
    Map* map = files_.find_map(map_backdrop_->file, map_backdrop_->graph);
    if (map == nullptr ||
        bytes_per_pixel(map->bits_per_pixel()) != bytes_per_pixel(screen_->bits_per_pixel()))
        return;
    const auto length = static_cast<std::size_t>(std::min(map->pitch(), screen_->pitch()));
    for (std::int32_t y = 0; y < std::min(map->height(), screen_->height()); ++y)
        std::memcpy(screen_->row(y).data(), map->row(y).data(), length);
}

void Engine::add_screen_processes() {
    blit_lists_.select(nullptr);
    for (const ProcessNode* node = processes_.first(screen_coordinates); node != nullptr; node = node->next) {
        ProcessLocals& p = *node->data;
        if (!is_shown(p) || !apply_graph_table(p)) continue;
        const FileRecord* file = files_.find_file(p.file);
        Map* map = files_.find_map(p.file, p.graph);
        if (file == nullptr || file->word1 == 0 || map == nullptr) continue;
        if (map->entry().word0 == 0 || map->entry().bitmap == nullptr) continue;
        fill_screen_entry(p, *map);
    }
}

void Engine::fill_screen_entry(ProcessLocals& p, Map& graphic) {
    __RVKBlit2D__& entry = *blit_lists_.main().add();
    const std::int32_t divisor = std::max(p.resolution, 1);
    entry.owner = &p;
    entry.graph_table = p.graph_table;
    entry.pos_x = p.x / divisor;
    entry.pos_y = p.y / divisor;
    entry.z = p.z;
    entry.region = p.region;
    entry.resolution = p.resolution;
    entry.angle = p.angle % full_turn;
    entry.size = p.size;
    entry.size_x = p.size_x;
    entry.size_y = p.size_y;
    entry.word20 = p.word38;
    entry.word25 = p.word43;
    entry.word26 = p.word44;
    entry.flags = p.flags;
    entry.word28 = p.word46;
    entry.word29 = p.word47;
    entry.word30 = p.word48;
    entry.word31 = p.word49;
    entry.has_clip = p.region > 0 && regions_.defined(p.region) ? 1 : 0;
    if (entry.has_clip != 0) {
        const __RVKRegion__& clip = regions_.at(p.region);
        entry.clip_x = clip.x;
        entry.clip_x2 = clip.x2;
        entry.clip_y = clip.y;
        entry.clip_y2 = clip.y2;
    }
    entry.bitmap = graphic.entry().bitmap;
    entry.target = graphics().ScreenMap;
    entry.draw = sprite_routine(graphics(), needs_of(p));
}

// A draw routine may use other lists while the main list is being walked, and has to select the main list
// again.
void Engine::draw_main_list() {
    blit_lists_.select(nullptr);
    BlitQueue& main = blit_lists_.main();
    main.sort();
    if (observer_ != nullptr) observer_->sorted(main);
    const std::vector<__RVKBlit2D__*> order = main.entries();
    for (__RVKBlit2D__* entry : order) {
        if (observer_ != nullptr) observer_->before_drawing(*entry);
        if (entry->draw != nullptr)
            entry->draw(entry);
        else
            add_fault("an entry of the main list has no draw routine");
        if (observer_ != nullptr) observer_->after_drawing(*entry);
        if (&blit_lists_.current() == &main) continue;
        add_fault("a draw routine left the list '" + blit_lists_.current().name() + "' selected");
        blit_lists_.select(nullptr);
    }
    main.clear();
}

}  // namespace host
