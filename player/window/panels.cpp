#include "player/window/panels.h"

#include <imgui.h>

#include <algorithm>

#include "player/canvas/style.h"
#include "player/window/commands.h"

namespace player {
namespace {

constexpr ImGuiWindowFlags plain = ImGuiWindowFlags_NoDecoration | ImGuiWindowFlags_NoMove |
                                   ImGuiWindowFlags_NoSavedSettings | ImGuiWindowFlags_NoFocusOnAppearing |
                                   ImGuiWindowFlags_NoNav;

// As wide as asked for, where the window has that room.
void begin_in_middle(const char* name, int width) {
    const ImVec2 room = ImGui::GetIO().DisplaySize;
    ImGui::SetNextWindowPos({room.x / 2, room.y / 2}, ImGuiCond_Always, {0.5F, 0.5F});
    ImGui::SetNextWindowSize({std::min(fpx(width), room.x), 0});
    ImGui::Begin(name, nullptr, plain | ImGuiWindowFlags_AlwaysAutoResize);
}

void write(Rgba colour, const char* text) {
    ImGui::PushStyleColor(ImGuiCol_Text, packed(colour));
    ImGui::TextWrapped("%s", text);
    ImGui::PopStyleColor();
}

}  // namespace

void show_keys() {
    begin_in_middle("keys", 480);
    write(accent, "Keys of the window");
    ImGui::Separator();
    ImGui::BeginTable("keys", 2);
    ImGui::TableSetupColumn("", ImGuiTableColumnFlags_WidthFixed);
    ImGui::TableSetupColumn("", ImGuiTableColumnFlags_WidthStretch);
    for (const CommandKey& key : command_keys()) {
        ImGui::TableNextColumn();
        ImGui::TextColored(vec(accent), "%s ", key.name);
        ImGui::TableNextColumn();
        write(ink, key.does);
    }
    ImGui::EndTable();
    ImGui::Separator();
    write(faint, "All other keys, and game pads, are the game's.");
    ImGui::End();
}

void show_error(const std::string& message) {
    begin_in_middle("error", 900);
    write(warning, "The script has stopped");
    ImGui::Separator();
    write(ink, message.c_str());
    ImGui::Separator();
    write(faint, "F5 loads it again, Escape closes the window.");
    ImGui::End();
}

Area note_place(const std::string& text, const Area& room) {
    const ImVec2 padding = ImGui::GetStyle().WindowPadding;
    const float most = std::max(1.0F, static_cast<float>(room.width) - 2 * padding.x);
    const ImVec2 size = ImGui::CalcTextSize(text.c_str(), nullptr, false, most);
    const int width = static_cast<int>(size.x + 2 * padding.x);
    return {room.x + (room.width - width) / 2, room.y, width, static_cast<int>(size.y + 2 * padding.y)};
}

void show_note(const std::string& text, const Area& place) {
    ImGui::SetNextWindowPos(vec(place.x, place.y));
    ImGui::SetNextWindowSize(vec(place.width, place.height));
    ImGui::SetNextWindowBgAlpha(0.8F);
    ImGui::Begin("note", nullptr, plain | ImGuiWindowFlags_NoInputs);
    ImGui::TextWrapped("%s", text.c_str());
    ImGui::End();
}

}  // namespace player
