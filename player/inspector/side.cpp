#include <algorithm>
#include <array>
#include <iterator>
#include <string>

#include "player/inspector/parts.h"

namespace player {
namespace {

constexpr std::size_t open_at_first = 3;  // scrolls; more would not fit a window of usual height

// The fifteen fields, as they are arranged.
constexpr const char* fields[] = {"camera", "ratio", "speed", "region1", "region2", "z",      "x0",    "y0",
                                  "alpha",  "x1",    "y1",    "visible", "file",    "graph1", "graph2"};
constexpr int most_fields_in_row = 3;
constexpr int field_name_width = 54;
constexpr int gap = 8;                                 // between columns
constexpr const char* longest_number = "-9999999999";  // a distance between two 32-bit numbers

int room_across() {
    return static_cast<int>(ImGui::GetContentRegionAvail().x);
}

int frame_padding() {
    return static_cast<int>(ImGui::GetStyle().FramePadding.x);
}

// Broken into lines where it is too long; a number is never broken.
void write(Rgba colour, const std::string& text) {
    ImGui::PushStyleColor(ImGuiCol_Text, packed(colour));
    ImGui::TextWrapped("%s", text.c_str());
    ImGui::PopStyleColor();
}

// A camera is a process: it can be let go of, but no slider leads from one to another.
void draw_camera_field(std::int32_t& value, const ScrollSurvey& scroll, int width) {
    if (value == 0)
        ImGui::TextColored(vec(faint), "none");
    else if (ImGui::Button(scroll.camera && scroll.camera->alive ? "let go" : "ended",
                           {static_cast<float>(width), 0}))
        value = 0;
}

void draw_yes_or_no(std::int32_t& value) {
    bool yes = value > 0;
    if (ImGui::Checkbox("##value", &yes)) value = yes ? 1 : 0;
}

bool is_number(std::string_view field) {
    return field != "camera" && field != "visible";
}

void draw_field(const char* name, std::int32_t& value, const ScrollSurvey& scroll, int width) {
    const std::string_view field = name;
    ImGui::SetNextItemWidth(static_cast<float>(width));
    if (field == "camera")
        draw_camera_field(value, scroll, width);
    else if (field == "alpha")
        ImGui::SliderInt("##value", &value, 0, 255);
    else if (field == "visible")
        draw_yes_or_no(value);
    else
        ImGui::DragInt("##value", &value, 1.0F);
}

// As many fields in a row as leave the longest value its room; where not even one does, names and values
// have lines of their own.
void draw_fields(const ScrollSurvey& scroll, host::Engine& engine) {
    const auto field_at = [&](const char* name) -> std::int32_t& {
        return engine.global("scroll", scroll.number, name);
    };
    int value_width = 0;
    for (const char* name : fields)
        if (is_number(name)) value_width = std::max(value_width, text_width(std::to_string(field_at(name))));
    value_width += 2 * frame_padding();
    const int room = room_across() + gap;
    const int in_row = std::min(most_fields_in_row, room / (field_name_width + value_width + gap));
    const int column = room / std::max(1, in_row);
    const int start = static_cast<int>(ImGui::GetCursorPosX());
    for (int i = 0; i < static_cast<int>(std::size(fields)); ++i) {
        const char* name = fields[i];
        const int at = in_row > 0 ? start + i % in_row * column : start;
        if (at > start) ImGui::SameLine(static_cast<float>(at));
        ImGui::AlignTextToFramePadding();
        ImGui::TextColored(vec(faint), "%s", name);
        if (in_row > 0) ImGui::SameLine(static_cast<float>(at + field_name_width));
        ImGui::PushID(name);
        std::int32_t& field = field_at(name);
        std::int32_t value = field;
        draw_field(name, value, scroll, column - gap - (in_row > 0 ? field_name_width : 0));
        if (value != field) field = value;
        ImGui::PopID();
    }
}

std::string describe(const ScrollSurvey& scroll) {
    std::string text = scroll.view.empty()
                           ? "view not known"
                           : std::to_string(scroll.view.width) + " x " + std::to_string(scroll.view.height) +
                                 " at " + std::to_string(scroll.view.x) + ", " +
                                 std::to_string(scroll.view.y);
    if (!scroll.on_screen)
        text += " on map " + std::to_string(scroll.destination_file) + "/" +
                std::to_string(scroll.destination_graph);
    if (!scroll.visible)
        text += ", hidden";
    else if (!scroll.drawn)
        text += ", not drawn";
    return text;
}

void draw_camera(const ScrollSurvey& scroll) {
    if (!scroll.camera) return write(faint, "no camera: the script moves it by x0, y0, x1, y1");
    if (!scroll.camera->alive) return write(warning, "the camera has ended: the scroll stands");
    const CameraSurvey& camera = *scroll.camera;
    const std::string destination = scroll.on_screen ? "the screen" : "its map";
    write(colour_of(Mark::camera), "camera at " + std::to_string(camera.world.x) + ", " +
                                       std::to_string(camera.world.y) + "   on " + destination + " " +
                                       std::to_string(camera.on_destination.x) + ", " +
                                       std::to_string(camera.on_destination.y));
    const auto region = [&](const std::optional<RegionSurvey>& chosen, Mark mark, const char* name) {
        if (!chosen) return;
        if (chosen->rect.empty() || !chosen->defined)
            return write(warning, std::string(name) + " = " + std::to_string(chosen->number) +
                                      (chosen->defined ? ": nothing of it is on " + destination
                                                       : " was never defined"));
        const Distances far = distances(camera.on_destination, chosen->rect);
        write(colour_of(mark), "to " + std::string(name) + ": left " + std::to_string(far.left) + "  right " +
                                   std::to_string(far.right) + "  up " + std::to_string(far.top) + "  down " +
                                   std::to_string(far.bottom));
    };
    region(scroll.region1, Mark::region1, "region1");
    region(scroll.region2, Mark::region2, "region2");
}

// "z 600 (3 sprites), 512 front plane, 100": the drawing order, runs of equal z taken together.
std::string order_of(const ScrollSurvey& scroll) {
    if (scroll.sprites.empty()) return "no sprites";
    std::string text = "sprites by z, deepest first: ";
    bool plane_told = !scroll.layered;
    const auto tell_plane = [&] {
        text += std::to_string(scroll.z) + " = front plane, ";
        plane_told = true;
    };
    for (auto run = scroll.sprites.begin(); run != scroll.sprites.end();) {
        const int z = run->z;
        const auto end =
            std::find_if(run, scroll.sprites.end(), [z](const SpriteSurvey& s) { return s.z != z; });
        // Among equals the plane comes first: it is entered before the sprites.
        if (!plane_told && z <= scroll.z) tell_plane();
        text += std::to_string(z);
        if (end - run > 1) text += " (" + std::to_string(end - run) + ")";
        text += ", ";
        run = end;
    }
    if (!plane_told) tell_plane();
    text.resize(text.size() - 2);
    return text;
}

// The sprites one by one, as many as there is room for: a table where its columns fit, else a text for each.
void draw_sprites(const std::vector<SpriteSurvey>& sprites, std::size_t most) {
    if (sprites.empty()) return;
    const auto text = [](std::int64_t value) { return std::to_string(value); };
    using Row = std::array<std::string, 4>;
    std::vector<Row> rows{{"z", "picture", "at", "clip"}};
    for (std::size_t i = 0; i < std::min(most, sprites.size()); ++i) {
        const SpriteSurvey& sprite = sprites[i];
        rows.push_back({text(sprite.z), text(sprite.file) + "/" + text(sprite.graph),
                        text(sprite.position.x) + ", " + text(sprite.position.y),
                        !sprite.clip ? "-"
                        : sprite.clip->empty()
                            ? "nothing left"
                            : text(sprite.clip->width) + " x " + text(sprite.clip->height) + " at " +
                                  text(sprite.clip->x) + ", " + text(sprite.clip->y)});
    }
    std::array<int, 5> columns{static_cast<int>(ImGui::GetCursorPosX())};
    for (std::size_t i = 0; i < 4; ++i) {
        columns[i + 1] = columns[i];
        for (const Row& row : rows)
            columns[i + 1] = std::max(columns[i + 1], columns[i] + text_width(row[i]) + 2 * gap);
    }
    if (columns[4] - columns[0] - 2 * gap <= room_across()) {
        for (const Row& row : rows)
            for (std::size_t i = 0; i < 4; ++i) {
                if (i > 0) ImGui::SameLine(static_cast<float>(columns[i]));
                ImGui::TextColored(vec(faint), "%s", row[i].c_str());
            }
    } else {
        for (auto row = rows.begin() + 1; row != rows.end(); ++row)
            write(faint,
                  "z " + (*row)[0] + "  picture " + (*row)[1] + "  at " + (*row)[2] + "  clip " + (*row)[3]);
    }
    if (sprites.size() > most)
        write(faint, "and " + text(static_cast<std::int64_t>(sprites.size() - most)) + " more");
}

void write_missing(const MissingMaps& missing) {
    for (const auto& [picture, count] : missing)
        write(warning, "not drawn: " + std::to_string(count) + (count == 1 ? " process" : " processes") +
                           " with picture " + std::to_string(picture.first) + "/" +
                           std::to_string(picture.second) + ", which is not loaded");
}

void draw_times(const std::vector<float>& times, bool timed) {
    if (!timed || times.empty()) return;
    const float most = *std::max_element(times.begin(), times.end());
    char text[48];
    std::snprintf(text, sizeof text, "draw time %.2f ms, up to %.2f", static_cast<double>(times.back()),
                  static_cast<double>(most));
    write(ink, text);
    ImGui::PlotLines("##times", times.data(), static_cast<int>(times.size()), 0, nullptr, 0,
                     std::max(most * 1.2F, 0.1F), {ImGui::GetContentRegionAvail().x, 34});
}

void draw_scroll(const ScrollSurvey& scroll, bool open, std::size_t sprites_listed, host::Engine& engine,
                 const Surveyor& surveyor, bool timed) {
    ImGui::PushID(scroll.number);
    const std::string name = "scroll " + std::to_string(scroll.number), described = describe(scroll);
    const std::string both = name + "   " + described;
    const int arrow = static_cast<int>(ImGui::GetFontSize()) + 3 * frame_padding();
    const bool fits = arrow + text_width(both) <= room_across();
    ImGui::SetNextItemOpen(open, ImGuiCond_Once);
    const bool is_open = ImGui::CollapsingHeader(((fits ? both : name) + "###scroll").c_str());
    if (!fits) write(ink, described);
    if (is_open) {
        draw_fields(scroll, engine);
        draw_camera(scroll);
        write(faint, order_of(scroll));
        write_missing(scroll.missing);
        draw_times(surveyor.times(scroll.number), timed);
        if (sprites_listed > 0) draw_sprites(scroll.sprites, sprites_listed);
        ImGui::Dummy({0, 4});
    }
    ImGui::PopID();
}

std::string order_of(const Survey& survey) {
    std::string text;
    for (const int number : survey.order)
        for (const ScrollSurvey& scroll : survey.scrolls)
            if (scroll.number == number)
                text += (text.empty() ? "" : ", ") + std::to_string(number) + " (z " +
                        std::to_string(scroll.z) + ")";
    return text.empty() ? "no scroll is drawn" : "scrolls in drawing order, deepest first: " + text;
}

}  // namespace

void draw_side(const Area& area, const Survey& survey, host::Engine& engine, const Surveyor& surveyor,
               bool timed) {
    begin_part("side", area);
    if (room_across() < text_width(longest_number) + 2 * frame_padding()) {
        ImGui::End();
        return;
    }
    write(faint, order_of(survey));
    if (!timed) write(faint, "draw times: measured in the window only");
    write_missing(survey.missing_on_screen);
    ImGui::Dummy({0, 2});
    const std::size_t sprites_listed = survey.scrolls.size() == 1 ? 10 : survey.scrolls.size() == 2 ? 4 : 0;
    for (std::size_t i = 0; i < survey.scrolls.size(); ++i)
        draw_scroll(survey.scrolls[i], i < open_at_first, sprites_listed, engine, surveyor, timed);
    ImGui::End();
}

}  // namespace player
