#include "player/inspector/surveyor.h"

#include <algorithm>
#include <limits>

#include "module/contract/numbers.h"

namespace player {
namespace {

constexpr std::size_t times_kept = 120;  // two seconds
constexpr const char* module_list = "SCROLL2D";

bool is_scroll_number(std::int32_t number) {
    return number >= 0 && number < scroll2d::scroll_count;
}

Rect between(std::int64_t left, std::int64_t right, std::int64_t top, std::int64_t bottom) {
    return {left, top, right - left + 1, bottom - top + 1};
}

// Extent of a picture after scaling; the figures are per cent, and a script may have written anything.
std::int64_t scaled(std::int64_t extent, std::int32_t size, std::int32_t own) {
    if (size < 1 || own < 1) return 0;
    constexpr double most = 1e9;
    return static_cast<std::int64_t>(std::min(most, static_cast<double>(extent) * size / 100 * own / 100));
}

}  // namespace

Surveyor::Surveyor(host::Engine& engine, std::function<double()> clock)
    : engine_(engine), clock_(std::move(clock)) {
    engine_.observe(this);
}

Surveyor::~Surveyor() {
    engine_.observe(nullptr);
}

const std::vector<float>& Surveyor::times(int scroll) const {
    return scrolls_.at(static_cast<std::size_t>(scroll)).times;
}

// ---- What the engine tells

void Surveyor::called(std::string_view name, std::span<const std::int32_t> arguments, std::int32_t result) {
    if (arguments.empty() || result < 0) return;
    const std::int32_t number = arguments[0];
    const std::int32_t first = is_scroll_number(number) ? number : 0;
    const std::int32_t last = is_scroll_number(number) ? number : scroll2d::scroll_count - 1;
    if ((name == "scroll_start" || name == "start_scroll") && arguments.size() >= 6) {
        if (!is_scroll_number(number) || result != number) return;
        Scroll& scroll = scrolls_[static_cast<std::size_t>(number)];
        scroll.flags = arguments[5];
        scroll.view = {};
        scroll.times.clear();
        scroll.graphs[1] = 1;  // until the fields, right after a start, have told
        take_maps(number);
    } else if (name == "scroll_refresh" || name == "refresh_scroll") {
        if (result > 0)
            for (int i = first; i <= last; ++i) take_maps(i);
    } else if (name == "scroll_set_destination" && arguments.size() == 4 && result > 0) {
        for (int i = first; i <= last; ++i) {
            scrolls_[static_cast<std::size_t>(i)].destination_file = arguments[1];
            scrolls_[static_cast<std::size_t>(i)].destination_graph = arguments[2];
        }
    }
}

// At a start and a refresh, and only then, the fields and the scroll agree about its maps.
void Surveyor::take_maps(int number) {
    Scroll& scroll = scrolls_[static_cast<std::size_t>(number)];
    const bool two_planes = scroll.graphs[1] != 0;
    scroll.file = engine_.global("scroll", number, "file");
    scroll.graphs = {engine_.global("scroll", number, "graph1"),
                     two_planes ? engine_.global("scroll", number, "graph2") : 0};
}

bool Surveyor::is_scroll(const __RVKBlit2D__& entry) const {
    const ScrollSystemInterface* services = engine_.services();
    return services != nullptr && entry.draw == services->BlitScroll2D && is_scroll_number(entry.id);
}

// Entries that a module makes for itself have routines of its own.
bool Surveyor::is_sprite(const __RVKBlit2D__& entry) const {
    const Graphics2DInterface& g = engine_.graphics();
    return entry.draw == g.BlitSprite || entry.draw == g.BlitSpriteScaled ||
           entry.draw == g.BlitSpriteRotated || entry.draw == g.BlitSpriteRotatedScaled ||
           entry.draw == g.BlitSpriteGeneral || entry.draw == g.BlitSpriteRotatedGeneral;
}

void Surveyor::before_drawing(const __RVKBlit2D__& entry) {
    if (!is_scroll(entry)) return;
    drawing_ = entry.id;
    scrolls_[static_cast<std::size_t>(drawing_)].sprites.clear();
    if (clock_) began_ = clock_();
}

void Surveyor::after_drawing(const __RVKBlit2D__& entry) {
    if (drawing_ < 0 || !is_scroll(entry)) return;
    Scroll& scroll = scrolls_[static_cast<std::size_t>(drawing_)];
    drawing_ = -1;
    scroll.drawn = entry.drawn == 1;
    if (scroll.drawn) order_.push_back(entry.id);
    if (!clock_) return;
    if (scroll.times.size() == times_kept) scroll.times.erase(scroll.times.begin());
    scroll.times.push_back(static_cast<float>(1000 * (clock_() - began_)));
}

void Surveyor::sorted(const host::BlitQueue& list) {
    if (list.name().empty()) {
        // The main list: a frame begins to be drawn.
        order_.clear();
        for (Scroll& scroll : scrolls_) {
            scroll.drawn = false;
            scroll.sprites.clear();
            scroll.plane_place.reset();
        }
        screen_sprites_ = survey_sprites(list);
    } else if (list.name() == module_list && drawing_ >= 0) {
        Scroll& scroll = scrolls_[static_cast<std::size_t>(drawing_)];
        scroll.sprites = survey_sprites(list);
        scroll.plane_place = place_of_plane(list);
    }
}

std::vector<SpriteSurvey> Surveyor::survey_sprites(const host::BlitQueue& list) const {
    std::vector<SpriteSurvey> sprites;
    for (const __RVKBlit2D__* entry : list.entries())
        if (is_sprite(*entry) && entry->bitmap != nullptr) sprites.push_back(survey_sprite(*entry));
    return sprites;
}

// The one entry of a scroll's list that is no sprite is its front plane.
std::optional<std::size_t> Surveyor::place_of_plane(const host::BlitQueue& list) const {
    const auto& entries = list.entries();
    const auto plane = std::find_if(entries.begin(), entries.end(),
                                    [this](const __RVKBlit2D__* entry) { return !is_sprite(*entry); });
    if (plane == entries.end()) return std::nullopt;
    return static_cast<std::size_t>(plane - entries.begin());
}

SpriteSurvey Surveyor::survey_sprite(const __RVKBlit2D__& entry) const {
    SpriteSurvey sprite;
    sprite.z = entry.z;
    if (entry.owner != nullptr) {
        sprite.file = entry.owner->file;
        sprite.graph = entry.owner->graph;
    }
    sprite.position = {entry.pos_x, entry.pos_y};
    const MapRecord& picture = *entry.bitmap;
    const bool held = picture.cpoint_count > 0 && picture.cpoints != nullptr;
    const std::int64_t width = scaled(picture.width, entry.size, entry.size_x);
    const std::int64_t height = scaled(picture.height, entry.size, entry.size_y);
    const std::int64_t anchor_x = held ? scaled(picture.cpoints[0].x, entry.size, entry.size_x) : width / 2;
    const std::int64_t anchor_y = held ? scaled(picture.cpoints[0].y, entry.size, entry.size_y) : height / 2;
    sprite.box = {sprite.position.x - anchor_x, sprite.position.y - anchor_y, width, height};
    if (entry.region > 0 && entry.has_clip != 0)
        sprite.clip = between(entry.clip_x, entry.clip_x2, entry.clip_y, entry.clip_y2);
    return sprite;
}

// ---- How things stand

// The views after the last drawing, in the module's own words: the entries that it would schedule now. They
// are looked at and thrown away.
void Surveyor::schedule() {
    engine_.run_hook(host::Hook::frame);
    host::BlitQueue& main = engine_.blit_lists().main();
    for (const __RVKBlit2D__* entry : main.entries())
        if (is_scroll(*entry))
            scrolls_[static_cast<std::size_t>(entry->id)].view =
                between(entry->x, entry->x2, entry->y, entry->y2);
    main.clear();
}

Survey Surveyor::survey() {
    Survey result;
    result.screen_width = engine_.screen().width();
    result.screen_height = engine_.screen().height();
    const ScrollSystemInterface* services = engine_.services();
    if (services == nullptr) return result;
    schedule();
    for (int i = 0; i < scroll2d::scroll_count; ++i) {
        __RVKPoint2D__ position{};
        if (services->GetScrollPos(i, 0, &position, nullptr) == 0) continue;
        survey_scroll(i, result.scrolls.emplace_back());
    }
    // A sprite's routine may have stopped a scroll that was drawn.
    for (const int number : order_)
        if (services->GetProcessInScroll(number, 0) != 0) result.order.push_back(number);
    result.screen_sprites = screen_sprites_;
    result.missing_on_screen = missing_maps(engine_, host::screen_coordinates);
    return result;
}

void Surveyor::survey_scroll(int number, ScrollSurvey& result) {
    const Scroll& scroll = scrolls_[static_cast<std::size_t>(number)];
    const ScrollSystemInterface& services = *engine_.services();
    __RVKPoint2D__ front{}, back{}, offset{};
    services.GetScrollPos(number, 0, &front, &back);
    services.GetScrollPoint(number, 0, &offset);
    result.number = number;
    result.visible = engine_.global("scroll", number, "visible") > 0;
    result.drawn = scroll.drawn;
    result.z = engine_.global("scroll", number, "z");
    result.file = scroll.file;
    result.plane_place = scroll.plane_place;
    result.destination_file = scroll.destination_file;
    result.destination_graph = scroll.destination_graph;
    result.on_screen = scroll.destination_graph == 0;
    result.view = scroll.view;
    const Rect destination = destination_of(scroll);
    if (!destination.empty()) result.view = common(scroll.view, destination);

    result.planes.push_back(survey_plane(scroll, 0, {front.x, front.y}));
    if (scroll.graphs[1] != 0) result.planes.push_back(survey_plane(scroll, 1, {back.x, back.y}));
    // A map smaller than the view repeats whatever the flags say.
    for (PlaneSurvey& plane : result.planes) {
        plane.repeats_x = plane.repeats_x || (plane.has_map && plane.map_width < result.view.width);
        plane.repeats_y = plane.repeats_y || (plane.has_map && plane.map_height < result.view.height);
    }
    result.camera = survey_camera(number, {offset.x, offset.y});
    result.region1 = survey_region(engine_.global("scroll", number, "region1"), destination);
    result.region2 = survey_region(engine_.global("scroll", number, "region2"), destination);
    result.sprites = scroll.sprites;
    result.missing = missing_maps(engine_, host::scroll_coordinates, number);
}

Rect Surveyor::destination_of(const Scroll& scroll) const {
    if (scroll.destination_graph == 0) return {0, 0, engine_.screen().width(), engine_.screen().height()};
    const host::Map* map = engine_.files().find_map(scroll.destination_file, scroll.destination_graph);
    return map != nullptr ? Rect{0, 0, map->width(), map->height()} : Rect{};
}

PlaneSurvey Surveyor::survey_plane(const Scroll& scroll, int plane, Point position) const {
    PlaneSurvey result;
    result.graph = scroll.graphs[static_cast<std::size_t>(plane)];
    result.position = position;
    using namespace scroll2d;
    result.repeats_x = (scroll.flags & (plane == 0 ? wrap_plane1_x : wrap_plane2_x)) != 0;
    result.repeats_y = (scroll.flags & (plane == 0 ? wrap_plane1_y : wrap_plane2_y)) != 0;
    if (const host::Map* map = engine_.files().find_map(scroll.file, result.graph)) {
        result.has_map = true;
        result.map_width = map->width();
        result.map_height = map->height();
    }
    return result;
}

std::optional<CameraSurvey> Surveyor::survey_camera(int number, Point offset) const {
    const std::int32_t id = engine_.global("scroll", number, "camera");
    if (id == 0) return std::nullopt;
    CameraSurvey camera;
    if (const ProcessLocals* process = engine_.processes().find(id)) {
        camera.alive = true;
        camera.world = {scroll2d::whole_pixels(process->x, process->resolution),
                        scroll2d::whole_pixels(process->y, process->resolution)};
        camera.on_destination = {camera.world.x + offset.x, camera.world.y + offset.y};
    }
    return camera;
}

std::optional<RegionSurvey> Surveyor::survey_region(std::int32_t region, const Rect& destination) const {
    // A number beyond the table counts as no region at all; one that was never defined is a region of zeros.
    if (region < 0 || region >= engine_.regions().count()) return std::nullopt;
    RegionSurvey result;
    result.number = region;
    result.defined = engine_.regions().defined(region);
    const __RVKRegion__& edges = engine_.regions().at(region);
    result.rect = common(between(edges.x, edges.x2, edges.y, edges.y2), destination);
    return result;
}

}  // namespace player
