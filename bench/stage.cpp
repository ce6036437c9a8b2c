#include "bench/stage.h"

#include <cstring>

#include "tests/model/inside.h"

namespace bench {
namespace {

constexpr std::int32_t file = 1;
constexpr std::int32_t sprite_graph = 30;
constexpr std::int32_t wrap_everywhere = 15;
constexpr std::int32_t with_alpha = 10;  // added to a picture's number for its map with per-pixel alpha

enum class Role : std::int32_t { cover = 10, back = 11, front = 12 };

std::int32_t graph(Role role, bool alpha) {
    return static_cast<std::int32_t>(role) + (alpha ? with_alpha : 0);
}

void create_maps(host::Engine& engine, Role role, const host::Image& image) {
    engine.files().create_map(file, graph(role, false), image, engine.palette(), false);
    if (engine.screen().bits_per_pixel() == 32)
        engine.files().create_map(file, graph(role, true), image, engine.palette(), true);
}

}  // namespace

Stage::Stage(Size view, std::int32_t bits_per_pixel, const Pictures& pictures)
    : engine_({.width = view.width, .height = view.height, .bits_per_pixel = bits_per_pixel}),
      view_(view),
      bits_per_pixel_(bits_per_pixel),
      pitch_(engine_.screen().pitch()) {
    create_maps(engine_, Role::cover, pictures.cover);
    create_maps(engine_, Role::back, pictures.back);
    create_maps(engine_, Role::front, pictures.front);
}

void Stage::load(const std::filesystem::path& module) {
    engine_.unload();
    engine_.load(module);
}

std::int32_t Stage::front_graph(const Variant& v) {
    const bool opaque = v.planes == 1 && v.mode == 0 && !v.front_alpha;
    return graph(opaque ? Role::cover : Role::front, v.front_alpha);
}

std::int32_t Stage::back_graph(const Variant& v) {
    if (v.planes == 1) return 0;
    return graph(v.keyed() || v.back_alpha ? Role::back : Role::cover, v.back_alpha);
}

host::Map& Stage::front_map(const Variant& v) {
    return *engine_.files().find_map(file, front_graph(v));
}

host::Map& Stage::back_map(const Variant& v) {
    return *engine_.files().find_map(file, back_graph(v));
}

void Stage::lay_backdrop() {
    host::Map& sky = *engine_.files().find_map(file, graph(Role::cover, false));
    for (std::int32_t y = 0; y < view_.height; ++y)
        std::memcpy(engine_.screen().row(y).data(), sky.row(view_.height - 1 - y).data(),
                    static_cast<std::size_t>(pitch_));
}

void Stage::call(std::string_view function, std::initializer_list<std::int32_t> arguments) {
    const host::CallResult result = engine_.call(function, arguments);
    if (!result.errors.empty()) throw host::Error(result.errors.front().text());
    if (result.failed()) throw host::Error(std::string(function) + " failed");
}

void Stage::add_process(std::int32_t x, std::int32_t y) {
    if (engine_.files().find_map(file, sprite_graph) == nullptr)
        engine_.files().create_map(file, sprite_graph, paint_sky({8, 8}), engine_.palette(), false);
    ProcessLocals& process = engine_.processes().create(host::scroll_coordinates);
    process.file = file;
    process.graph = sprite_graph;
    process.x = x;
    process.y = y;
}

void Stage::load_straight(const std::filesystem::path& opened_module) {
    load(opened_module);
    const auto* inside = static_cast<const model::Inside*>(engine_.symbol("scroll2d_inside"));
    if (inside == nullptr) throw host::Error(opened_module.string() + " cannot be looked into");
    *inside->asking = scroll2d::Asking::never;
}

Show::Show(Stage& stage, const Variant& variant, std::int32_t scroll)
    : stage_(stage), scroll_(scroll), blit_(stage.engine().services()->BlitScroll2D), entry_(nullptr) {
    stage_.call("scroll_start", {scroll, file, Stage::front_graph(variant), Stage::back_graph(variant), 0,
                                 wrap_everywhere, variant.mode});
    host::Engine& engine = stage_.engine();
    engine.global("scroll", scroll, "alpha") = variant.alpha;
    x0_ = &engine.global("scroll", scroll, "x0");
    y0_ = &engine.global("scroll", scroll, "y0");
    x1_ = &engine.global("scroll", scroll, "x1");
    y1_ = &engine.global("scroll", scroll, "y1");
    engine.run_hook(host::Hook::frame);
    for (__RVKBlit2D__* entry : engine.blit_lists().main().entries())
        if (entry->id == scroll) entry_ = entry;
    if (entry_ == nullptr) throw host::Error("the frame hook made no entry of the scroll");
}

void Show::go(Position at) {
    const Position part{stage_.view().width / 3, stage_.view().height / 3};  // a third is moved, not filled
    *x0_ = at.x - part.x;
    *y0_ = at.y - part.y;
    move({0, 0});
    move(part);
}

Show::~Show() {
    stage_.engine().blit_lists().main().clear();
    stage_.engine().call("scroll_stop", {scroll_});
}

}  // namespace bench
