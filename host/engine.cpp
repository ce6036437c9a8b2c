#include "host/engine.h"

#include <algorithm>
#include <utility>

#include "host/module_library.h"

namespace host {

Engine* Engine::live_ = nullptr;

Engine::Engine(const Options& options)
    : fence_(options.fence),
      files_(options.file_slots, options.system_graph_count, video(), options.fence),
      regions_(options.region_slots, options.fence, graphics()),
      globals_(options.fence) {
    if (live_ != nullptr) throw Error("an engine lives already; the slots of a host have room for one");
    publish_registrar();
    publish_runtime();
    publish_screen({options.width, options.height, options.bits_per_pixel});
    live_ = this;
}

Engine::~Engine() {
    unload();
    live_ = nullptr;
}

void Engine::publish_screen(const VideoMode& mode) {
    screen_ = std::make_unique<Bitmap>(mode.width, mode.height, mode.bits_per_pixel, fence_);
    video().bits_per_pixel = mode.bits_per_pixel;
    graphics().ScreenMap = &screen_->record();
    regions_.define(0, 0, 0, mode.width - 1, mode.height - 1);
}

std::int32_t Engine::constant(std::string_view name) const {
    const auto found =
        std::find_if(constants_.begin(), constants_.end(), [&](const auto& c) { return c.name == name; });
    if (found == constants_.end()) throw Error("there is no constant '" + std::string(name) + "'");
    return found->value;
}

CallResult Engine::call(std::string_view name, std::initializer_list<std::int32_t> arguments) {
    return call(name, std::span<const std::int32_t>(arguments.begin(), arguments.size()));
}

CallResult Engine::call(std::string_view name, std::span<const std::int32_t> arguments) {
    const ScriptFunction& function = resolve(functions_, name, arguments.size());
    const std::size_t errors_before = errors_.size();
    CallFrame frame(arguments);
    CallFrame* outer = std::exchange(call_, &frame);
    const std::int32_t returned = function.handler();
    call_ = outer;
    if (frame.left() != 0)
        add_fault(function.name + " left " + std::to_string(frame.left()) + " arguments on the stack");
    if (!frame.returned) add_fault(function.name + " did not call ReturnInt");
    if (frame.returned && returned != frame.token())
        add_fault(function.name + " did not return what ReturnInt returned");
    if (observer_ != nullptr) observer_->called(name, arguments, frame.value);
    const auto first = errors_.begin() + static_cast<std::ptrdiff_t>(std::min(errors_before, errors_.size()));
    return {frame.value, {first, errors_.end()}};
}

std::int32_t& Engine::global(std::string_view name, std::int32_t index, std::string_view field) {
    return globals_.at(name, index, field);
}

void Engine::move_globals() {
    globals_.move();
    runtime().GlobalData = globals_.data();
}

void Engine::change_video_mode(const VideoMode& mode, const ModeChange& how) {
    // The old screen goes after the new one has come, so the two never share an address.
    std::unique_ptr<Bitmap> old = std::move(screen_);
    try {
        publish_screen(mode);
    } catch (...) {
        screen_ = std::move(old);
        throw;
    }
    old_screen_ = how.keep_old_screen ? std::move(old) : nullptr;
    old.reset();
    if (how.convert_maps) files_.convert(mode.bits_per_pixel, palette_);
    if (how.before_update) how.before_update();
    video().reset_flag = how.reset ? 1 : 0;
    run_hook(Hook::update);
    video().reset_flag = 0;
}

std::vector<std::string> Engine::untouched() const {
    std::vector<std::string> violations;
    registrar_.check("", violations);
    runtime_.check("", violations);
    process_services_.check("", violations);
    graphics_.check("", violations);
    frame_state_.check("", violations);
    video_.check("", violations);
    files_.check(violations);
    regions_.check(violations);
    processes_.check(violations);
    blit_lists_.check(violations);
    screen_->check("of the screen", violations);
    if (old_screen_) old_screen_->check("of the old screen", violations);
    globals_.check(violations);
    return violations;
}

}  // namespace host
