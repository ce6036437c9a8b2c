// Files, the numbered packages of maps.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "host/bitmap.h"
#include "host/depth.h"

namespace host {

// Graph numbers of every file but file 0 are below it.
inline constexpr std::int32_t graph_limit = 1000;

// File 0 is the system file: always there, with a graph limit of its own. Other files come and go.
class Files {
  public:
    // `video` is read at each create_map for the current depth.
    Files(std::int32_t file_count, std::int32_t system_graph_count, const VideoInfo& video, Fence fence);

    [[nodiscard]] std::int32_t file_count() const { return file_count_; }
    [[nodiscard]] std::int32_t system_graph_count() const { return system_graph_count_; }
    // Files beyond the new count, and maps of file 0 beyond the new limit, are unloaded.
    void set_counts(std::int32_t file_count, std::int32_t system_graph_count);

    // Makes an empty file. Its record has word 1 = 1 and word 2 = the number of maps it holds, kept up to
    // date. Errors: Error for a number out of range or in use.
    FileRecord& create_file(std::int32_t file);

    // Makes a map at the current depth, in place of the one that had this number; the file is created where
    // needed. `pixels` are height rows of width pixels without gaps, or empty for all 0. The returned map
    // lives until it is unloaded or replaced. Errors: Error for a number, a size or an amount of pixels out
    // of range.
    Map& create_map(std::int32_t file, std::int32_t graph, std::int32_t width, std::int32_t height,
                    std::span<const std::byte> pixels = {});
    // The same from a picture; `alpha_flag` keeps per-pixel alpha at 32 bits (and is set at 32 bits only).
    Map& create_map(std::int32_t file, std::int32_t graph, const Image& image, const Palette& palette,
                    bool alpha_flag);

    // Nothing happens when there is none.
    void unload_map(std::int32_t file, std::int32_t graph);
    // File 0 loses its maps and stays.
    void unload_file(std::int32_t file);

    [[nodiscard]] Map* find_map(std::int32_t file, std::int32_t graph);       // null: none
    [[nodiscard]] FileRecord* find_file(std::int32_t file);                   // null: none
    [[nodiscard]] std::vector<std::int32_t> graphs(std::int32_t file) const;  // numbers of the file's maps

    // Brings every map to a depth by way of RGBA: new pixel memory each, the records stay where they are.
    void convert(std::int32_t bits_per_pixel, const Palette& palette);

    void check(std::vector<std::string>& violations) const;

  private:
    struct File {
        Patterned<FileRecord> record;
        std::map<std::int32_t, std::unique_ptr<Map>> maps;
    };
    File& file_at(std::int32_t file);  // creates it
    void check_graph(std::int32_t file, std::int32_t graph) const;
    static void count_maps(File& file);

    std::int32_t file_count_ = 0;
    std::int32_t system_graph_count_ = 0;
    const VideoInfo& video_;
    Fence fence_;
    std::map<std::int32_t, std::unique_ptr<File>> files_;
};

}  // namespace host
