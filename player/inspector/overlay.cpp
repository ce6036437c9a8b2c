// The marks that lie over the running game.
#include <algorithm>
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

#include "player/inspector/parts.h"

namespace player {
namespace {

std::string text_of(std::int64_t value) {
    return std::to_string(value);
}

class Overlay {
  public:
    Overlay(ImDrawList& list, const Projection& to_picture, int thickness, const Shown& shown)
        : list_(list), to_picture_(to_picture), thickness_(thickness), shown_(shown) {}

    void draw(const ScrollSurvey& scroll) {
        draw_sprites(scroll.sprites, scroll.view);
        if (shown_(Mark::view))
            outline(list_, to_picture_(scroll.view), thickness_, packed(colour_of(Mark::view)));
        if (shown_(Mark::map_edge)) draw_map_edges(scroll);
        if (!scroll.camera) return;
        if (scroll.region2 && shown_(Mark::region2))
            draw_named(scroll.region2->rect, Mark::region2, "region2 = " + text_of(scroll.region2->number));
        if (scroll.region1 && shown_(Mark::region1))
            draw_named(scroll.region1->rect, Mark::region1, "region1 = " + text_of(scroll.region1->number));
        if (scroll.camera->alive && shown_(Mark::camera)) draw_camera(scroll);
    }

    // No sprite shows outside its view, nor does its box.
    void draw_sprites(const std::vector<SpriteSurvey>& sprites, const Rect& view) {
        clip_to(list_, to_picture_(view));
        for (const SpriteSurvey& sprite : sprites) draw_sprite(sprite, view);
        list_.PopClipRect();
    }

    // At half its height, since games write into the corners.
    void name_view(const Rect& view, const std::string& name) {
        if (!shown_(Mark::view)) return;
        const Area area = to_picture_(view);
        names_.push_back({area.x + thickness_, area.y + area.height / 2 - px(tag_height) / 2, name,
                          colour_of(Mark::view)});
    }

    // Once all marks are drawn, so that none crosses a figure.
    void draw_all_tags(const Area& covered) {
        std::vector<Tag> tags = std::move(figures_);
        tags.insert(tags.end(), names_.begin(), names_.end());
        draw_tags(list_, tags, to_picture_.room(), covered);
    }

  private:
    void draw_sprite(const SpriteSurvey& sprite, const Rect& view) {
        Rgba faded = colour_of(Mark::sprite);
        faded.a = 150;
        // Pictures of the view's own size, such as frames and captions, would only be a second edge.
        if (shown_(Mark::sprite) && common(sprite.box, view) != view)
            outline(list_, to_picture_(sprite.box), 1, packed(faded));
        if (shown_(Mark::clip) && sprite.clip)
            outline(list_, to_picture_(*sprite.clip), thickness_, packed(colour_of(Mark::clip)));
    }

    void draw_named(const Rect& rect, Mark mark, const std::string& name) {
        if (rect.empty()) return;
        const Area area = to_picture_(rect);
        outline(list_, area, thickness_, packed(colour_of(mark)));
        names_.push_back({area.x + thickness_, area.y + thickness_, name, colour_of(mark)});
    }

    void draw_map_edges(const ScrollSurvey& scroll) {
        if (scroll.planes.empty() || scroll.view.empty()) return;
        const Sides sides = stopped_sides(scroll.planes.front(), scroll.view.width, scroll.view.height);
        const Area view = to_picture_(scroll.view);
        const int bar = 2 * thickness_ + 2;
        const ImU32 colour = packed(colour_of(Mark::map_edge));
        if (sides & left_side) fill(list_, {view.x, view.y, bar, view.height}, colour);
        if (sides & right_side) fill(list_, {view.x + view.width - bar, view.y, bar, view.height}, colour);
        if (sides & top_side) fill(list_, {view.x, view.y, view.width, bar}, colour);
        if (sides & bottom_side) fill(list_, {view.x, view.y + view.height - bar, view.width, bar}, colour);
    }

    // The point, and dashed lines with figures, since they are measures and no edges.
    void draw_camera(const ScrollSurvey& scroll) {
        for (const auto& [line, distance] : measures(scroll, to_picture_)) {
            dashes(list_, line, packed(colour_of(Mark::camera)));
            const std::string text = text_of(distance);
            figures_.push_back({line.x + (line.width - text_width(text)) / 2 - px(3),
                                line.y + (line.height - px(tag_height)) / 2, text, colour_of(Mark::camera)});
        }
        const Area at = to_picture_.of(scroll.camera->on_destination);
        const int arm = px(4) + 2 * thickness_;
        outline(list_, {at.x - arm, at.y - arm, at.width + 2 * arm, at.height + 2 * arm}, thickness_,
                packed(colour_of(Mark::camera)));
        fill(list_, at, packed(colour_of(Mark::camera)));
    }

    ImDrawList& list_;
    const Projection& to_picture_;
    int thickness_;
    const Shown& shown_;
    std::vector<Tag> figures_;
    std::vector<Tag> names_;
};

}  // namespace

std::vector<Measure> measures(const ScrollSurvey& scroll, const Projection& to_picture) {
    const Rect& room = scroll.region1   ? scroll.region1->rect
                       : scroll.region2 ? scroll.region2->rect
                                        : scroll.view;
    if (room.empty()) return {};
    const Point point = scroll.camera->on_destination;
    const Area at = to_picture.of(point), edges = to_picture(room);
    const Distances far = distances(point, room);
    const auto across = [&](int from, int to) {
        return Area{std::min(from, to), at.y + at.height / 2, std::abs(to - from), 1};
    };
    const auto down = [&](int from, int to) {
        return Area{at.x + at.width / 2, std::min(from, to), 1, std::abs(to - from)};
    };
    return {{across(edges.x, at.x), far.left},
            {across(at.x + at.width, edges.x + edges.width), far.right},
            {down(edges.y, at.y), far.top},
            {down(at.y + at.height, edges.y + edges.height), far.bottom}};
}

void draw_overlay(const Survey& survey, const Placement& placed, const Shown& shown, const Area& covered) {
    ImDrawList& list = *ImGui::GetBackgroundDrawList();
    const Projection to_picture(placed.at, survey.screen_width, survey.screen_height);
    const int thickness = std::max(1, (placed.scale + 1) / 2);
    Overlay overlay(list, to_picture, thickness, shown);
    clip_to(list, placed.at);
    overlay.draw_sprites(survey.screen_sprites, {0, 0, survey.screen_width, survey.screen_height});
    // Scrolls that lie upon each other share one name tag.
    std::vector<std::pair<Rect, std::string>> names;
    for (const ScrollSurvey& scroll : survey.scrolls) {
        if (!scroll.on_screen || !scroll.visible || scroll.view.empty()) continue;
        overlay.draw(scroll);
        const auto same = std::find_if(names.begin(), names.end(),
                                       [&](const auto& named) { return named.first == scroll.view; });
        if (same == names.end())
            names.emplace_back(scroll.view, "scroll " + text_of(scroll.number));
        else
            same->second += ", " + text_of(scroll.number);
    }
    for (const auto& [view, name] : names) overlay.name_view(view, name);
    overlay.draw_all_tags(covered);
    list.PopClipRect();
}

}  // namespace player
