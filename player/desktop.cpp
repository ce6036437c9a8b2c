#include "player/desktop.h"

#include <cstdio>
#include <exception>
#include <memory>

#include "player/inspector/inspector.h"
#include "player/output/output.h"
#include "player/window/window.h"

namespace player {
namespace {

// Null when no window can be opened; then the reason has been printed.
std::unique_ptr<Window> open_window(const Options& options) {
    try {
        return std::make_unique<Window>(options);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s; drawing pictures instead\n", error.what());
        return nullptr;
    }
}

}  // namespace

std::optional<int> play_in_window(const Options& options) {
    const auto window = open_window(options);
    if (!window) return std::nullopt;
    const Outputs outputs = make_outputs(options);
    window->deliver_to(outputs);
    return deliver(outputs, [&] { return window->run(); });
}

PictureStep inspected_pictures(host::Engine& engine, int scale) {
    const auto pictures = std::make_shared<InspectedPictures>(engine, scale == 1 ? 0 : scale);
    return [pictures](const Picture& screen) { return pictures->take(screen); };
}

}  // namespace player
