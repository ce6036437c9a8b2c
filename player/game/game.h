/*
 * The world that a script plays in: the engine with a module in it, pictures turned into maps, the screen
 * with background and text, the keyboard. Knows nothing of Lua.
 *
 * Errors: host::Error or std::runtime_error with a message for the script's author, whatever is asked for.
 */
#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "host/engine.h"
#include "player/common/options.h"
#include "player/common/picture.h"
#include "player/game/file_watch.h"
#include "player/game/keys.h"

namespace player {

inline constexpr int number_of_files = 100;
inline constexpr int number_of_regions = 100;

class Game {
  public:
    explicit Game(const Options& options);

    host::Engine engine;
    bool over = false;
    int exit_status = 0;
    int frames_drawn = 0;
    Keys keys;
    FileWatch files_read;  // by the script, itself included

    // Draws one frame, with the background behind and the texts in front. Throws what the module reported,
    // and what it did wrong. Warns on standard error, once for each, of pictures that processes show and
    // that are not loaded.
    void draw_frame();

    // ---- Maps

    struct Part {
        int x, y, w, h;  // pixels
    };

    // A path as the script gives it: relative to the script's folder.
    [[nodiscard]] std::string path_of(const std::string& path) const;
    // A PNG, at a path as the script gives it.
    Picture read_picture(const std::string& path);
    // Errors: no such map; the message lists those that the file has.
    host::Map& map_at(int file, int graph);
    // Of a picture, or of the part of it that is asked for. Errors: a part that does not lie within the
    // picture.
    host::Map& load_map(int file, int graph, const std::string& path,
                        std::optional<Part> part = std::nullopt);
    // Writes a PNG: with the palette at 8 bits, else with alpha where some pixel is not opaque.
    void save_map(int file, int graph, const std::string& path);
    // Where in the script a process was given a picture that is not loaded (yet), for the warning to come.
    void note_place(int file, int graph, const std::string& place) {
        places_.try_emplace({file, graph}, place);
    }
    // Points are numbered 0 to 999; those that are missing before this one come to (0, 0).
    void set_control_point(int file, int graph, int number, int x, int y);

    // ---- Colours

    [[nodiscard]] int bits_per_pixel() { return engine.video().bits_per_pixel; }
    // At the present depth; 0, transparent, for a colour without opacity.
    [[nodiscard]] std::uint32_t pixel_of(Rgba colour);
    // At most 256 colours, from index 0 on; index 0 is transparent whatever its colour.
    void set_palette(const std::vector<Rgba>& colours);

    // ---- Screen

    // Maps are converted to a new depth (8, 16 or 32); `reset` stops every scroll.
    void set_mode(int width, int height, int bits_per_pixel, bool reset);
    // What lies behind everything: a picture with its top left corner at the screen's, or a colour.
    void set_background(std::variant<Rgba, Picture> background);
    // Draws over this frame only, its top left corner at (x, y); `scale` is a whole number, 1 or more.
    void add_text(int x, int y, std::string text, std::uint32_t pixel, int scale);
    // Writes this frame's picture once it is drawn.
    void request_shot(const std::string& path) { shots_.push_back(path_of(path)); }

  private:
    struct Text {
        int x, y;
        std::string text;
        std::uint32_t pixel;
        int scale;
    };

    std::vector<std::uint8_t> indices_in_palette(const Picture& picture);
    void lay_background();
    void draw_texts();
    void report_module();
    void warn_of_missing_maps();
    [[nodiscard]] std::string without_map(int file, int graph);

    std::filesystem::path folder_;
    bool palette_chosen_ = false;
    std::variant<Rgba, Picture> background_ = Rgba{0, 0, 0, 255};
    std::vector<Text> texts_;
    std::vector<std::string> shots_;
    std::map<std::pair<int, int>, std::string> places_;  // by file and graph
    std::set<std::pair<int, int>> warned_;
};

}  // namespace player
