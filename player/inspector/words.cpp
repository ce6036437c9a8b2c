#include "player/inspector/words.h"

#include <algorithm>

namespace player {
namespace {

std::string text_of(std::int64_t value) {
    return std::to_string(value);
}

std::string text_of(const Point& point) {
    return text_of(point.x) + ", " + text_of(point.y);
}

std::string text_of(const Rect& rect) {
    return text_of(rect.width) + " x " + text_of(rect.height) + " at " + text_of(Point{rect.x, rect.y});
}

std::string destination_of(const ScrollSurvey& scroll) {
    return scroll.on_screen ? "the screen" : "its map";
}

Line words_of_region(const ScrollSurvey& scroll, const RegionSurvey& region, Mark mark) {
    const std::string name = kind_of(mark).name;
    if (!region.defined) return {warning, name + " = " + text_of(region.number) + " was never defined"};
    if (region.rect.empty())
        return {warning,
                name + " = " + text_of(region.number) + ": nothing of it is on " + destination_of(scroll)};
    const Distances far = distances(scroll.camera->on_destination, region.rect);
    return {colour_of(mark), "to " + name + ": left " + text_of(far.left) + "  right " + text_of(far.right) +
                                 "  up " + text_of(far.top) + "  down " + text_of(far.bottom)};
}

}  // namespace

std::string order_of_scrolls(const Survey& survey) {
    std::string text;
    for (const int number : survey.order)
        for (const ScrollSurvey& scroll : survey.scrolls)
            if (scroll.number == number)
                text += (text.empty() ? "" : ", ") + text_of(number) + " (z " + text_of(scroll.z) + ")";
    return text.empty() ? "no scroll is drawn" : "scrolls in drawing order, deepest first: " + text;
}

std::string words_of_view(const ScrollSurvey& scroll) {
    std::string text = scroll.view.empty() ? "view not known" : text_of(scroll.view);
    if (!scroll.on_screen)
        text += " on map " + text_of(scroll.destination_file) + "/" + text_of(scroll.destination_graph);
    if (!scroll.visible) return text + ", hidden";
    return scroll.drawn ? text : text + ", not drawn";
}

std::vector<Line> words_of_camera(const ScrollSurvey& scroll) {
    if (!scroll.camera) return {{faint, "no camera: the script moves it by x0, y0, x1, y1"}};
    if (!scroll.camera->alive) return {{warning, "the camera has ended: the scroll stands"}};
    std::vector<Line> lines{{colour_of(Mark::camera), "camera at " + text_of(scroll.camera->world) +
                                                          "   on " + destination_of(scroll) + " " +
                                                          text_of(scroll.camera->on_destination)}};
    if (scroll.region1) lines.push_back(words_of_region(scroll, *scroll.region1, Mark::region1));
    if (scroll.region2) lines.push_back(words_of_region(scroll, *scroll.region2, Mark::region2));
    return lines;
}

std::string order_of_sprites(const ScrollSurvey& scroll) {
    if (scroll.sprites.empty()) return "no sprites";
    std::string text = "sprites by z, deepest first: ";
    const auto tell_plane = [&] { text += text_of(scroll.z) + " = front plane, "; };
    const auto begin = scroll.sprites.begin(), end = scroll.sprites.end();
    const auto plane =
        begin + static_cast<std::ptrdiff_t>(scroll.plane_place.value_or(scroll.sprites.size()));
    for (auto run = begin; run != end;) {
        const int z = run->z;
        const auto limit = run < plane ? plane : end;
        const auto next = std::find_if(run, limit, [z](const SpriteSurvey& s) { return s.z != z; });
        if (scroll.plane_place && run == plane) tell_plane();
        text += text_of(z);
        if (next - run > 1) text += " (" + text_of(next - run) + ")";
        text += ", ";
        run = next;
    }
    if (scroll.plane_place && plane == end) tell_plane();
    text.resize(text.size() - 2);
    return text;
}

std::vector<Line> words_of_missing(const MissingMaps& missing) {
    std::vector<Line> lines;
    for (const auto& [picture, count] : missing)
        lines.push_back({warning, "not drawn: " + text_of(count) + (count == 1 ? " process" : " processes") +
                                      " with picture " + text_of(picture.first) + "/" +
                                      text_of(picture.second) + ", which is not loaded"});
    return lines;
}

std::array<std::string, 4> words_of_sprite(const SpriteSurvey& sprite) {
    return {text_of(sprite.z), text_of(sprite.file) + "/" + text_of(sprite.graph), text_of(sprite.position),
            !sprite.clip           ? "-"
            : sprite.clip->empty() ? "nothing left"
                                   : text_of(*sprite.clip)};
}

}  // namespace player
