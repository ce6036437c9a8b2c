#include "player/game/game.h"

#include <algorithm>
#include <cstdio>
#include <stdexcept>

#include "player/game/missing_maps.h"
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
    : engine(engine_options(options)), folder_(std::filesystem::path(options.script).parent_path()) {
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
    warn_of_missing_maps();
    for (const std::string& path : shots_) write_png(path, Picture(engine.screenshot()));
    shots_.clear();
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

void Game::warn_of_missing_maps() {
    for (const std::int32_t type : {host::screen_coordinates, host::scroll_coordinates})
        for (const auto& [picture, count] : missing_maps(engine, type)) {
            if (!warned_.insert(picture).second) continue;
            const auto place = places_.find(picture);
            std::fprintf(stderr, "warning: %s%s; a process that shows it is not drawn\n",
                         place == places_.end() ? "" : place->second.c_str(),
                         without_map(picture.first, picture.second).c_str());
        }
}

// "file 1 has no graph 13 (there are: 10 to 12, 20)"
std::string Game::without_map(int file, int graph) {
    const auto text = [](int number) { return std::to_string(number); };
    if (file < 0 || file >= number_of_files)
        return "there is no file " + text(file) + ": files are numbered 0 to " + text(number_of_files - 1);
    const std::string what = "file " + text(file) + " has no graph " + text(graph);
    if (graph < 1 || graph >= host::graph_limit)
        return what + ": graphs are numbered 1 to " + text(host::graph_limit - 1);
    const std::vector<std::int32_t> graphs = engine.files().graphs(file);
    std::string there;
    for (auto run = graphs.begin(); run != graphs.end();) {
        auto last = run;
        while (last + 1 != graphs.end() && *(last + 1) == *last + 1) ++last;
        there += (there.empty() ? "" : ", ") + text(*run) + (last == run ? "" : " to " + text(*last));
        run = last + 1;
    }
    return what + (there.empty() ? " (the file is empty)" : " (there are: " + there + ")");
}

host::Map& Game::map_at(int file, int graph) {
    if (host::Map* map = engine.files().find_map(file, graph)) return *map;
    throw std::runtime_error(without_map(file, graph));
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
    host::Files& files = engine.files();
    if (picture.indexed()) {
        if (bits_per_pixel() == 8) {
            const auto indices = indices_in_palette(picture);
            return files.create_map(file, graph, picture.width, picture.height,
                                    std::as_bytes(std::span(indices)));
        }
        for (std::size_t i = 0; i < picture.pixels.size(); ++i)
            if (picture.indices[i] == 0) picture.pixels[i] = {0, 0, 0, 0};
    }
    return files.create_map(file, graph, picture, engine.palette(), picture.has_alpha);
}

// The picture's own indices where its palette is the engine's, else those of the nearest colours.
std::vector<std::uint8_t> Game::indices_in_palette(const Picture& picture) {
    if (!palette_chosen_) set_palette({picture.palette.begin(), picture.palette.end()});
    std::array<std::uint8_t, 256> translation{};
    for (std::size_t i = 1; i < translation.size(); ++i) {
        Rgba wanted = picture.palette[i];
        const bool transparent = wanted.a < 128;
        wanted.a = 255;
        const auto same = static_cast<std::uint8_t>(i);
        const Rgba own = engine.palette()[same];
        const bool equal = own.r == wanted.r && own.g == wanted.g && own.b == wanted.b;
        translation[i] = transparent ? 0 : equal ? same : engine.palette().nearest(wanted);
    }
    std::vector<std::uint8_t> result(picture.indices.size());
    std::transform(picture.indices.begin(), picture.indices.end(), result.begin(),
                   [&](std::uint8_t index) { return translation[index]; });
    return result;
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
    if (colours.size() > 256) throw std::runtime_error("a palette has 256 colours at most");
    for (std::size_t i = 0; i < colours.size(); ++i) {
        Rgba colour = colours[i];
        colour.a = 255;
        engine.palette().set(static_cast<std::uint8_t>(i), colour);
    }
    palette_chosen_ = true;
}

void Game::set_mode(int width, int height, int bits_per_pixel, bool reset) {
    if (bits_per_pixel != 8 && bits_per_pixel != 16 && bits_per_pixel != 32)
        throw std::runtime_error("bits per pixel are 8, 16 or 32, not " + std::to_string(bits_per_pixel));
    host::ModeChange how;
    how.reset = reset;
    how.convert_maps = bits_per_pixel != this->bits_per_pixel();
    engine.change_video_mode({width, height, bits_per_pixel}, how);
    lay_background();
}

void Game::set_background(std::variant<Rgba, Picture> background) {
    background_ = std::move(background);
    lay_background();
}

// The engine's backdrop covers the whole screen in either case: what it left free would keep the last frame.
void Game::lay_background() {
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
