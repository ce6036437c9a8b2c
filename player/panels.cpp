#include "player/panels.h"

#include <imgui.h>

#include <algorithm>

#include "player/commands.h"
#include "player/style.h"

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

void show_note(const std::string& text) {
    ImGui::SetNextWindowPos({ImGui::GetIO().DisplaySize.x / 2, 0}, ImGuiCond_Always, {0.5F, 0});
    ImGui::SetNextWindowBgAlpha(0.8F);
    ImGui::Begin("note", nullptr, plain | ImGuiWindowFlags_AlwaysAutoResize | ImGuiWindowFlags_NoInputs);
    ImGui::TextUnformatted(text.c_str());
    ImGui::End();
}

}  // namespace player
