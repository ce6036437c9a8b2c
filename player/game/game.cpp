#include "player/game/game.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "player/game/scrolls.h"
#include "player/game/text.h"

namespace player {
namespace {

// The place of the background picture; the last graph of the system file.
constexpr int background_file = 0;
constexpr int background_graph = host::graph_limit - 1;

host::Options engine_options(const Options& options) {
    host::Options result;
    result.width = options.width;
    result.height = options.height;
    result.bits_per_pixel = options.bits_per_pixel;
    result.file_slots = number_of_files;
    result.region_slots = number_of_regions;
    // Destination maps are held to this limit in every file, so it is as high as a file's own.
    result.system_graph_count = host::graph_limit;
    return result;
}

std::string size_text(int w, int h) {
    return std::to_string(w) + " x " + std::to_string(h);
}

}  // namespace

Game::Game(const Options& options)
    : engine(engine_options(options)),
      mistakes(engine),
      folder_(std::filesystem::path(options.script).parent_path()) {
    if (!std::filesystem::exists(options.module))
        throw std::runtime_error("there is no module at " + options.module);
    engine.load(options.module);
    lay_background();
}

void Game::draw_frame() {
    engine.frame();
    ++frames_drawn;
    draw_texts();
    report_module();
    mistakes.look();
    write_shots();
}

void Game::request_shot(const std::string& path, const std::string& place) {
    const std::string full = path_of(path);
    const auto folder = std::filesystem::path(full).parent_path();
    if (!folder.empty() && !std::filesystem::is_directory(folder))
        throw std::runtime_error("there is no folder " + folder.string());
    shots_.push_back({full, place});
}

void Game::write_shots() {
    for (const Shot& shot : std::exchange(shots_, {})) {
        try {
            write_png(shot.path, Picture(engine.screenshot()));
        } catch (const std::exception& error) {
            throw std::runtime_error(shot.place + "shot: " + error.what());
        }
    }
}

// A frame has no line of the script to blame, but it must not fail unseen.
void Game::report_module() {
    const std::string place = "while frame " + std::to_string(frames_drawn) + " was drawn: ";
    if (!engine.faults().empty())
        throw std::runtime_error(place + "the module broke its contract: " + engine.faults().front());
    if (engine.errors().empty()) return;
    const std::string text = engine.errors().front().text();
    engine.clear_errors();
    throw std::runtime_error(place + text);
}

std::string Game::path_of(const std::string& path) const {
    return (folder_ / path).string();
}

host::Map& Game::map_at(int file, int graph) {
    if (host::Map* map = engine.files().find_map(file, graph)) return *map;
    throw std::runtime_error(without_map(engine, file, graph));
}

Picture Game::read_picture(const std::string& path) {
    const std::string place = path_of(path);
    files_read.note(place);
    return read_png(place);
}

host::Map& Game::load_map(int file, int graph, const std::string& path, std::optional<Part> part) {
    Picture picture = read_picture(path);
    if (part) {
        const auto [x, y, w, h] = *part;
        if (x < 0 || y < 0 || w < 1 || h < 1 || x > picture.width - w || y > picture.height - h)
            throw std::runtime_error(path + " is " + size_text(picture.width, picture.height) +
                                     ": there is no part of " + size_text(w, h) + " at (" +
                                     std::to_string(x) + ", " + std::to_string(y) + ")");
        picture = cut_out(picture, x, y, w, h);
    }
    if (bits_per_pixel() == 8) return load_matched(file, graph, std::move(picture));
    if (picture.indexed())
        for (std::size_t i = 0; i < picture.pixels.size(); ++i)
            if (picture.indices[i] == 0) picture.pixels[i] = {0, 0, 0, 0};
    return engine.files().create_map(file, graph, picture, engine.palette(), picture.has_alpha);
}

// At 8 bits. An indexed picture whose palette is the engine's has nothing to be matched: it changes its
// colours with the palette.
host::Map& Game::load_matched(int file, int graph, Picture picture) {
    if (picture.indexed() && !palette_chosen_) set_palette({picture.palette.begin(), picture.palette.end()});
    const auto indices = match(picture, engine.palette());
    host::Map& map = engine.files().create_map(file, graph, picture.width, picture.height,
                                               std::as_bytes(std::span(indices)));
    matched_.forget(file, graph);
    const bool own =
        std::equal(indices.begin(), indices.end(), picture.indices.begin(), picture.indices.end(),
                   [](auto is, auto was) { return is == 0 || is == was; });
    if (!own) matched_.keep(file, graph, std::move(picture), engine.palette());
    return map;
}

void Game::new_map(int file, int graph, int width, int height, std::uint32_t pixel) {
    host::Map& map = engine.files().create_map(file, graph, width, height);
    matched_.forget(file, graph);
    map.set_alpha_flag(false);
    map.fill(pixel);
}

void Game::unload_map(int file, int graph) {
    engine.files().unload_map(file, graph);
    matched_.forget(file, graph);
}

void Game::save_map(int file, int graph, const std::string& path) {
    host::Map& map = map_at(file, graph);
    Picture picture(host::to_image(map, engine.palette()));
    picture.has_alpha = std::any_of(picture.pixels.begin(), picture.pixels.end(),
                                    [](const Rgba& pixel) { return pixel.a != 255; });
    if (map.bits_per_pixel() == 8) {
        const auto* bytes = reinterpret_cast<const std::uint8_t*>(map.bytes().data());
        picture.indices.assign(bytes, bytes + map.bytes().size());
        for (std::size_t i = 0; i < picture.palette.size(); ++i)
            picture.palette[i] = engine.palette()[static_cast<std::uint8_t>(i)];
        picture.palette[0].a = 0;
    }
    write_png(path_of(path), picture);
}

void Game::set_control_point(int file, int graph, int number, int x, int y) {
    constexpr int most_points = 1000;
    if (number < 0 || number >= most_points)
        throw std::runtime_error("control points are numbered 0 to " + std::to_string(most_points - 1) +
                                 ", not " + std::to_string(number));
    host::Map& map = map_at(file, graph);
    const MapRecord& record = map.record();
    std::vector<__RVKPoint2D__> points;
    if (record.cpoint_count > 0) points.assign(record.cpoints, record.cpoints + record.cpoint_count);
    const auto place = static_cast<std::size_t>(number);
    if (points.size() <= place) points.resize(place + 1);
    points[place] = {x, y};
    map.set_control_points(points);
}

std::uint32_t Game::pixel_of(Rgba colour) {
    if (colour.a == 0) return 0;
    return host::to_pixel(colour, bits_per_pixel(), engine.palette(), true);
}

void Game::set_palette(const std::vector<Rgba>& colours) {
    for (std::size_t i = 0; i < colours.size(); ++i) {
        Rgba colour = colours[i];
        colour.a = 255;
        engine.palette().set(static_cast<std::uint8_t>(i), colour);
    }
    palette_chosen_ = true;
    if (bits_per_pixel() != 8) return;
    const bool matched = matched_.match_anew(engine.files(), engine.palette());
    lay_background();
    if (!matched) return;
    for (const int scroll : running_scrolls(engine)) engine.call("scroll_refresh", {scroll});
}

void Game::set_mode(int width, int height, int bits_per_pixel, bool reset) {
    if (bits_per_pixel != 8 && bits_per_pixel != 16 && bits_per_pixel != 32)
        throw std::runtime_error("bits per pixel are 8, 16 or 32, not " + std::to_string(bits_per_pixel));
    host::ModeChange how;
    how.reset = reset;
    how.convert_maps = bits_per_pixel != this->bits_per_pixel();
    MatchedMaps matched;
    if (how.convert_maps && bits_per_pixel == 8)
        for (int file = 0; file < number_of_files; ++file)
            for (const int graph : engine.files().graphs(file))
                matched.keep(file, graph, Picture(host::to_image(map_at(file, graph), engine.palette())),
                             engine.palette());
    engine.change_video_mode({width, height, bits_per_pixel}, how);
    if (how.convert_maps) matched_ = std::move(matched);
    lay_background();
}

void Game::set_background(std::variant<Rgba, Picture> background) {
    background_ = std::move(background);
    lay_background();
}

// The engine's backdrop covers the whole screen in either case: what it left free would keep the last frame.
void Game::lay_background() {
    matched_.forget(background_file, background_graph);
    if (const auto* colour = std::get_if<Rgba>(&background_)) {
        engine.files().unload_map(background_file, background_graph);
        engine.set_backdrop(pixel_of(*colour));
        return;
    }
    Picture full(engine.screen().width(), engine.screen().height(), {0, 0, 0, 255});
    paste(full, std::get<Picture>(background_), 0, 0);
    engine.files().create_map(background_file, background_graph, full, engine.palette(), false);
    engine.set_backdrop(background_file, background_graph);
}

void Game::add_text(int x, int y, std::string text, std::uint32_t pixel, int scale) {
    texts_.push_back({x, y, std::move(text), pixel, scale});
}

void Game::draw_texts() {
    for (const Text& text : texts_)
        draw_text(engine.screen(), text.x, text.y, text.text, text.pixel, text.scale);
    texts_.clear();
}

}  // namespace player
