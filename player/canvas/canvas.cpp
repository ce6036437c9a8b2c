#include "player/canvas/canvas.h"

#include <SDL.h>
#include <backends/imgui_impl_sdl.h>
#include <backends/imgui_impl_sdlrenderer.h>
#include <imgui.h>

#include <cstring>
#include <map>
#include <stdexcept>

#include "player/canvas/style.h"
#include "player/common/pacer.h"

namespace player {
namespace {

struct Destroy {
    void operator()(SDL_Renderer* renderer) const { SDL_DestroyRenderer(renderer); }
    void operator()(SDL_Texture* texture) const { SDL_DestroyTexture(texture); }
    void operator()(SDL_Surface* surface) const { SDL_FreeSurface(surface); }
    void operator()(ImGuiContext* context) const { ImGui::DestroyContext(context); }
};
template <class T>
using Owned = std::unique_ptr<T, Destroy>;

template <class T>
T* made(T* thing, const char* what) {
    if (!thing) throw std::runtime_error(std::string(what) + ": " + SDL_GetError());
    return thing;
}

bool has_size(SDL_Texture* texture, int width, int height) {
    int w = 0, h = 0;
    return texture && SDL_QueryTexture(texture, nullptr, nullptr, &w, &h) == 0 && w == width && h == height;
}

bool near_sixty(SDL_Window* window) {
    SDL_DisplayMode mode{};
    return SDL_GetCurrentDisplayMode(SDL_GetWindowDisplayIndex(window), &mode) == 0 &&
           mode.refresh_rate >= 59 && mode.refresh_rate <= 61;
}

}  // namespace

// In this order: a renderer goes before its surface, a texture before its renderer.
struct Canvas::Parts {
    SDL_Window* window = nullptr;
    Owned<SDL_Surface> surface;
    Owned<SDL_Renderer> renderer;
    Owned<SDL_Texture> screen;
    std::map<int, Owned<SDL_Texture>> textures;
    Owned<ImGuiContext> panels;

    // Lays a picture into a texture, which is made anew when it has another size.
    void update(Owned<SDL_Texture>& texture, const Picture& picture) const {
        if (!has_size(texture.get(), picture.width, picture.height))
            texture.reset(made(SDL_CreateTexture(renderer.get(), SDL_PIXELFORMAT_RGBA32,
                                                 SDL_TEXTUREACCESS_STATIC, picture.width, picture.height),
                               "no texture"));
        SDL_UpdateTexture(texture.get(), nullptr, picture.pixels.data(),
                          picture.width * static_cast<int>(sizeof(Rgba)));
    }
};

Canvas::Canvas(SDL_Window* window) : parts_(std::make_unique<Parts>()) {
    parts_->window = window;
    parts_->renderer.reset(
        made(SDL_CreateRenderer(window, -1, SDL_RENDERER_PRESENTVSYNC), "no renderer for the window"));
    SDL_RendererInfo info{};
    locked_ = SDL_GetRendererInfo(parts_->renderer.get(), &info) == 0 &&
              (info.flags & SDL_RENDERER_PRESENTVSYNC) != 0 && near_sixty(window);
    start_panels();
    ImGui_ImplSDL2_InitForSDLRenderer(window);
}

Canvas::Canvas(int width, int height) : parts_(std::make_unique<Parts>()) {
    constexpr int depth = 32;
    parts_->surface.reset(
        made(SDL_CreateRGBSurfaceWithFormat(0, width, height, depth, SDL_PIXELFORMAT_RGBA32), "no picture"));
    parts_->renderer.reset(
        made(SDL_CreateSoftwareRenderer(parts_->surface.get()), "no renderer for pictures"));
    start_panels();
    ImGui::GetIO().DisplaySize = {static_cast<float>(width), static_cast<float>(height)};
}

void Canvas::start_panels() {
    SDL_SetHint(SDL_HINT_RENDER_SCALE_QUALITY, "nearest");
    parts_->panels.reset(ImGui::CreateContext());
    ImGuiIO& io = ImGui::GetIO();
    // Nothing is remembered from run to run: a picture follows from the script alone.
    io.IniFilename = nullptr;
    io.LogFilename = nullptr;
    io.DeltaTime = static_cast<float>(1 / frames_per_second);
    apply_style(steps_);
    ImGui_ImplSDLRenderer_Init(parts_->renderer.get());
}

Canvas::~Canvas() {
    ImGui_ImplSDLRenderer_Shutdown();
    if (parts_->window) ImGui_ImplSDL2_Shutdown();
}

Area Canvas::size() const {
    Area size{0, 0, 1, 1};
    SDL_GetRendererOutputSize(parts_->renderer.get(), &size.width, &size.height);
    return size;
}

void Canvas::tell(const SDL_Event& event) {
    ImGui_ImplSDL2_ProcessEvent(&event);
}

bool Canvas::takes_keyboard() const {
    return ImGui::GetIO().WantTextInput;
}

void Canvas::begin(int steps) {
    if (steps != steps_) {
        ImGui_ImplSDLRenderer_DestroyFontsTexture();  // made anew with the next frame
        apply_style(steps);
        steps_ = steps;
    }
    ImGui_ImplSDLRenderer_NewFrame();
    if (parts_->window) ImGui_ImplSDL2_NewFrame();
    ImGui::NewFrame();
    SDL_SetRenderDrawColor(parts_->renderer.get(), surround.r, surround.g, surround.b, surround.a);
    SDL_RenderClear(parts_->renderer.get());
}

void Canvas::lay(const Picture& screen, const Area& at) {
    if (screen.pixels.empty()) return;
    parts_->update(parts_->screen, screen);
    SDL_SetTextureBlendMode(parts_->screen.get(), SDL_BLENDMODE_NONE);
    const SDL_Rect target{at.x, at.y, at.width, at.height};
    SDL_RenderCopy(parts_->renderer.get(), parts_->screen.get(), nullptr, &target);
}

bool Canvas::has_texture(int number, int width, int height) const {
    const auto found = parts_->textures.find(number);
    return found != parts_->textures.end() && has_size(found->second.get(), width, height);
}

void Canvas::keep_texture(int number, const Picture& picture) {
    parts_->update(parts_->textures[number], picture);
}

void* Canvas::texture(int number) const {
    return parts_->textures.at(number).get();
}

void Canvas::finish() {
    ImGui::Render();
    ImGui_ImplSDLRenderer_RenderDrawData(ImGui::GetDrawData());
    SDL_RenderPresent(parts_->renderer.get());
}

Picture Canvas::picture() const {
    const SDL_Surface& surface = *parts_->surface;
    Picture result(surface.w, surface.h);
    for (int y = 0; y < surface.h; ++y) {
        const auto* row = static_cast<const std::uint8_t*>(surface.pixels) + y * surface.pitch;
        std::memcpy(&result.at(0, y), row, static_cast<std::size_t>(surface.w) * sizeof(Rgba));
    }
    // What blending left in the alpha is nobody's business.
    for (Rgba& pixel : result.pixels) pixel.a = 255;
    return result;
}

}  // namespace player
