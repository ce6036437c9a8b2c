#include <algorithm>
#include <string>

#include "player/inspector/parts.h"

namespace player {
namespace {

constexpr std::size_t open_at_first = 3;  // scrolls; more would not fit a window of usual height

// The fifteen fields, as they are arranged.
constexpr const char* fields[] = {"camera", "ratio", "speed", "region1", "region2", "z",      "x0",    "y0",
                                  "alpha",  "x1",    "y1",    "visible", "file",    "graph1", "graph2"};
constexpr int fields_in_row = 3;

void faint_text(const std::string& text) {
    ImGui::PushStyleColor(ImGuiCol_Text, packed(faint));
    ImGui::TextWrapped("%s", text.c_str());
    ImGui::PopStyleColor();
}

// A camera is a process: it can be let go of, but no slider leads from one to another.
void draw_camera_field(std::int32_t& value, const ScrollSurvey& scroll) {
    if (value == 0)
        ImGui::TextColored(vec(faint), "none");
    else if (ImGui::Button(scroll.camera && scroll.camera->alive ? "let go" : "ended", {-1, 0}))
        value = 0;
}

void draw_yes_or_no(std::int32_t& value) {
    bool yes = value > 0;
    if (ImGui::Checkbox("##value", &yes)) value = yes ? 1 : 0;
}

void draw_field(const char* name, std::int32_t& value, const ScrollSurvey& scroll) {
    const std::string_view field = name;
    ImGui::SetNextItemWidth(-1);
    if (field == "camera")
        draw_camera_field(value, scroll);
    else if (field == "alpha")
        ImGui::SliderInt("##value", &value, 0, 255);
    else if (field == "visible")
        draw_yes_or_no(value);
    else
        ImGui::DragInt("##value", &value, 1.0F);
}

void draw_fields(const ScrollSurvey& scroll, host::Engine& engine) {
    if (!ImGui::BeginTable("fields", 2 * fields_in_row, ImGuiTableFlags_None)) return;
    for (int i = 0; i < fields_in_row; ++i) {
        ImGui::TableSetupColumn("name", ImGuiTableColumnFlags_WidthFixed, 50);
        ImGui::TableSetupColumn("value", ImGuiTableColumnFlags_WidthStretch);
    }
    for (const char* name : fields) {
        ImGui::TableNextColumn();
        ImGui::AlignTextToFramePadding();
        ImGui::TextColored(vec(faint), "%s", name);
        ImGui::TableNextColumn();
        ImGui::PushID(name);
        std::int32_t& field = engine.global("scroll", scroll.number, name);
        std::int32_t value = field;
        draw_field(name, value, scroll);
        if (value != field) field = value;
        ImGui::PopID();
    }
    ImGui::EndTable();
}

std::string described(const ScrollSurvey& scroll) {
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
    const auto line = [](Rgba colour, const std::string& text) {
        ImGui::TextColored(vec(colour), "%s", text.c_str());
    };
    if (!scroll.camera) return line(faint, "no camera: the script moves it by x0, y0, x1, y1");
    if (!scroll.camera->alive) return line(warning, "the camera has ended: the scroll stands");
    const CameraSurvey& camera = *scroll.camera;
    line(colour_of(Mark::camera), "camera at " + std::to_string(camera.world.x) + ", " +
                                      std::to_string(camera.world.y) + "   on the screen " +
                                      std::to_string(camera.on_destination.x) + ", " +
                                      std::to_string(camera.on_destination.y));
    const auto region = [&](const std::optional<RegionSurvey>& chosen, Mark mark, const char* name) {
        if (!chosen) return;
        if (chosen->rect.empty() || !chosen->defined)
            return line(warning,
                        std::string(name) + " = " + std::to_string(chosen->number) +
                            (chosen->defined ? ": nothing of it is on the screen" : " was never defined"));
        const Distances far = distances(camera.on_destination, chosen->rect);
        line(colour_of(mark), std::string(name) + ": left " + std::to_string(far.left) + "  right " +
                                  std::to_string(far.right) + "  up " + std::to_string(far.top) + "  down " +
                                  std::to_string(far.bottom));
    };
    region(scroll.region1, Mark::region1, "to region1");
    region(scroll.region2, Mark::region2, "to region2");
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

// The sprites one by one, as many as there is room for.
void draw_sprites(const std::vector<SpriteSurvey>& sprites, std::size_t most) {
    if (sprites.empty() || !ImGui::BeginTable("sprites", 4, ImGuiTableFlags_SizingStretchProp)) return;
    ImGui::PushStyleColor(ImGuiCol_Text, packed(faint));
    const auto cell = [](const std::string& text) {
        ImGui::TableNextColumn();
        ImGui::TextUnformatted(text.c_str());
    };
    for (const char* head : {"z", "picture", "at", "clip"}) cell(head);
    for (std::size_t i = 0; i < std::min(most, sprites.size()); ++i) {
        const SpriteSurvey& sprite = sprites[i];
        cell(std::to_string(sprite.z));
        cell(std::to_string(sprite.file) + "/" + std::to_string(sprite.graph));
        cell(std::to_string(sprite.position.x) + ", " + std::to_string(sprite.position.y));
        cell(!sprite.clip ? "-"
             : sprite.clip->empty()
                 ? "nothing left"
                 : std::to_string(sprite.clip->width) + " x " + std::to_string(sprite.clip->height) + " at " +
                       std::to_string(sprite.clip->x) + ", " + std::to_string(sprite.clip->y));
    }
    ImGui::EndTable();
    if (sprites.size() > most) ImGui::Text("and %d more", static_cast<int>(sprites.size() - most));
    ImGui::PopStyleColor();
}

void draw_times(const std::vector<float>& times, bool timed) {
    if (!timed || times.empty()) return;
    const float most = *std::max_element(times.begin(), times.end());
    char text[48];
    std::snprintf(text, sizeof text, "draw time %.2f ms, up to %.2f", static_cast<double>(times.back()),
                  static_cast<double>(most));
    ImGui::PlotLines("##times", times.data(), static_cast<int>(times.size()), 0, text, 0,
                     std::max(most * 1.2F, 0.1F), {ImGui::GetContentRegionAvail().x, 34});
}

void draw_scroll(const ScrollSurvey& scroll, bool open, std::size_t sprites_listed, host::Engine& engine,
                 const Surveyor& surveyor, bool timed) {
    ImGui::PushID(scroll.number);
    const std::string name =
        "scroll " + std::to_string(scroll.number) + "   " + described(scroll) + "###scroll";
    ImGui::SetNextItemOpen(open, ImGuiCond_Once);
    if (ImGui::CollapsingHeader(name.c_str())) {
        draw_fields(scroll, engine);
        draw_camera(scroll);
        faint_text(order_of(scroll));
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
    faint_text(order_of(survey));
    if (!timed) faint_text("draw times: measured in the window only");
    ImGui::Dummy({0, 2});
    const std::size_t sprites_listed = survey.scrolls.size() == 1 ? 10 : survey.scrolls.size() == 2 ? 4 : 0;
    for (std::size_t i = 0; i < survey.scrolls.size(); ++i)
        draw_scroll(survey.scrolls[i], i < open_at_first, sprites_listed, engine, surveyor, timed);
    ImGui::End();
}

}  // namespace player
