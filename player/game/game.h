/*
 * The world that a script plays in: the engine with a module in it, pictures turned into maps, the screen
 * with background and text, the keyboard. Knows nothing of Lua.
 *
 * Errors: host::Error or std::runtime_error with a message for the script's author, whatever is asked for.
 */
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "host/engine.h"
#include "player/common/options.h"
#include "player/common/picture.h"
#include "player/game/file_watch.h"
#include "player/game/keys.h"
#include "player/game/matched_maps.h"
#include "player/game/mistakes.h"

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
    Mistakes mistakes;

    // Draws one frame, with the background behind and the texts in front. Throws what the module reported,
    // and what it did wrong.
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
    // One colour, without per-pixel alpha.
    void new_map(int file, int graph, int width, int height, std::uint32_t pixel);
    void unload_map(int file, int graph);
    // Writes a PNG: with the palette at 8 bits, else with alpha where some pixel is not opaque.
    void save_map(int file, int graph, const std::string& path);
    // Points are numbered 0 to 999; those that are missing before this one come to (0, 0).
    void set_control_point(int file, int graph, int number, int x, int y);

    // ---- Colours

    [[nodiscard]] int bits_per_pixel() { return engine.video().bits_per_pixel; }
    // At the present depth; 0, transparent, for a colour without opacity.
    [[nodiscard]] std::uint32_t pixel_of(Rgba colour);
    static constexpr int most_colours = 256;
    // At most so many colours, from index 0 on; index 0 is transparent whatever its colour. At 8 bits maps
    // whose colours were matched are matched anew, and running scrolls show it.
    void set_palette(const std::vector<Rgba>& colours);

    // ---- Screen

    // Maps are converted to a new depth (8, 16 or 32); `reset` stops every scroll.
    void set_mode(int width, int height, int bits_per_pixel, bool reset);
    // What lies behind everything: a picture with its top left corner at the screen's, or a colour.
    void set_background(std::variant<Rgba, Picture> background);
    // Draws over this frame only, its top left corner at (x, y); `scale` is a whole number, 1 or more.
    void add_text(int x, int y, std::string text, std::uint32_t pixel, int scale);
    // Writes this frame's picture once it is drawn. Errors: no such folder; `place` is named when the picture
    // cannot be written later on.
    void request_shot(const std::string& path, const std::string& place);

  private:
    struct Text {
        int x, y;
        std::string text;
        std::uint32_t pixel;
        int scale;
    };

    struct Shot {
        std::string path, place;
    };

    host::Map& load_matched(int file, int graph, Picture picture);
    void lay_background();
    void draw_texts();
    void write_shots();
    void report_module();

    std::filesystem::path folder_;
    bool palette_chosen_ = false;
    std::variant<Rgba, Picture> background_ = Rgba{0, 0, 0, 255};
    std::vector<Text> texts_;
    std::vector<Shot> shots_;
    MatchedMaps matched_;
};

}  // namespace player
