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

void begin_in_middle(const char* name, float width) {
    const ImVec2 room = ImGui::GetIO().DisplaySize;
    ImGui::SetNextWindowPos({room.x / 2, room.y / 2}, ImGuiCond_Always, {0.5F, 0.5F});
    if (width > 0) ImGui::SetNextWindowSize({width, 0});
    ImGui::Begin(name, nullptr, plain | ImGuiWindowFlags_AlwaysAutoResize);
}

}  // namespace

void show_keys() {
    begin_in_middle("keys", 0);
    ImGui::TextColored(vec(accent), "Keys of the window");
    ImGui::Separator();
    ImGui::BeginTable("keys", 2, ImGuiTableFlags_SizingFixedFit);
    for (const CommandKey& key : command_keys()) {
        ImGui::TableNextColumn();
        ImGui::TextColored(vec(accent), "%s ", key.name);
        ImGui::TableNextColumn();
        ImGui::TextUnformatted(key.does);
    }
    ImGui::EndTable();
    ImGui::Separator();
    ImGui::TextColored(vec(faint), "All other keys, and game pads, are the game's.");
    ImGui::End();
}

void show_error(const std::string& message) {
    const float room = ImGui::GetIO().DisplaySize.x;
    begin_in_middle("error", std::clamp(room - 40, 100.0F, 900.0F));
    ImGui::TextColored(vec(warning), "The script has stopped");
    ImGui::Separator();
    ImGui::PushTextWrapPos(0);
    ImGui::TextUnformatted(message.c_str());
    ImGui::PopTextWrapPos();
    ImGui::Separator();
    ImGui::TextColored(vec(faint), "F5 loads it again, Escape closes the window.");
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
    ImGui::SetNextWindowPos({static_cast<float>(place.x), static_cast<float>(place.y)});
    ImGui::SetNextWindowSize({static_cast<float>(place.width), static_cast<float>(place.height)});
    ImGui::SetNextWindowBgAlpha(0.8F);
    ImGui::Begin("note", nullptr, plain | ImGuiWindowFlags_NoInputs);
    ImGui::TextWrapped("%s", text.c_str());
    ImGui::End();
}

}  // namespace player
