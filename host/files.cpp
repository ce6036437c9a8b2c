#include "host/files.h"

#include <cstring>

#include "host/error.h"

namespace host {

Files::Files(std::int32_t file_count, std::int32_t system_graph_count, const VideoInfo& video, Fence fence)
    : video_(video), fence_(fence) {
    set_counts(file_count, system_graph_count);
    create_file(0);
}

void Files::set_counts(std::int32_t file_count, std::int32_t system_graph_count) {
    if (file_count < 1) throw Error("there has to be a slot for file 0, not " + std::to_string(file_count));
    if (system_graph_count < 0) throw Error("file 0 cannot hold fewer than no maps");
    file_count_ = file_count;
    system_graph_count_ = system_graph_count;
    files_.erase(files_.lower_bound(file_count), files_.end());
    if (const auto system = files_.find(0); system != files_.end()) {
        auto& maps = system->second->maps;
        maps.erase(maps.lower_bound(system_graph_count), maps.end());
        count_maps(*system->second);
    }
}

FileRecord& Files::create_file(std::int32_t file) {
    if (file < 0 || file >= file_count_)
        throw Error("file " + std::to_string(file) + " is not one of 0 to " +
                    std::to_string(file_count_ - 1));
    auto& place = files_[file];
    if (place) throw Error("file " + std::to_string(file) + " is in use");
    place = std::make_unique<File>();
    place->record.get().word1 = 1;
    count_maps(*place);
    return place->record.get();
}

Files::File& Files::file_at(std::int32_t file) {
    if (!files_.contains(file)) create_file(file);
    return *files_.at(file);
}

void Files::check_graph(std::int32_t file, std::int32_t graph) const {
    const std::int32_t limit = file == 0 ? system_graph_count_ : graph_limit;
    if (graph < 0 || graph >= limit)
        throw Error("map " + std::to_string(graph) + " of file " + std::to_string(file) +
                    " is not one of 0 to " + std::to_string(limit - 1));
}

void Files::count_maps(File& file) {
    file.record.get().word2 = static_cast<std::int32_t>(file.maps.size());
}

Map& Files::create_map(std::int32_t file, std::int32_t graph, std::int32_t width, std::int32_t height,
                       std::span<const std::byte> pixels) {
    check_graph(file, graph);
    // The new map is complete before the old one goes, so its addresses differ from the old one's.
    auto map = std::make_unique<Map>(width, height, video_.bits_per_pixel, fence_);
    if (!pixels.empty() && pixels.size() != map->bytes().size())
        throw Error("a map of " + std::to_string(width) + " x " + std::to_string(height) + " pixels takes " +
                    std::to_string(map->bytes().size()) + " bytes, not " + std::to_string(pixels.size()));
    if (!pixels.empty()) std::memcpy(map->bytes().data(), pixels.data(), pixels.size());
    File& owner = file_at(file);
    auto& place = owner.maps[graph];
    std::swap(place, map);
    count_maps(owner);
    return *place;
}

Map& Files::create_map(std::int32_t file, std::int32_t graph, const Image& image, const Palette& palette,
                       bool alpha_flag) {
    Map& map = create_map(file, graph, image.width, image.height);
    map.set_alpha_flag(alpha_flag && map.bits_per_pixel() == 32);
    paint(map, image, palette);
    return map;
}

void Files::unload_map(std::int32_t file, std::int32_t graph) {
    const auto found = files_.find(file);
    if (found == files_.end()) return;
    found->second->maps.erase(graph);
    count_maps(*found->second);
}

void Files::unload_file(std::int32_t file) {
    if (file != 0) {
        files_.erase(file);
        return;
    }
    files_.at(0)->maps.clear();
    count_maps(*files_.at(0));
}

Map* Files::find_map(std::int32_t file, std::int32_t graph) {
    const auto owner = files_.find(file);
    if (owner == files_.end()) return nullptr;
    const auto map = owner->second->maps.find(graph);
    return map == owner->second->maps.end() ? nullptr : map->second.get();
}

FileRecord* Files::find_file(std::int32_t file) {
    const auto found = files_.find(file);
    return found == files_.end() ? nullptr : &found->second->record.get();
}

std::vector<std::int32_t> Files::graphs(std::int32_t file) const {
    std::vector<std::int32_t> numbers;
    if (const auto found = files_.find(file); found != files_.end())
        for (const auto& [graph, map] : found->second->maps) numbers.push_back(graph);
    return numbers;
}

void Files::convert(std::int32_t bits_per_pixel, const Palette& palette) {
    for (auto& [number, file] : files_) {
        for (auto& [graph, map] : file->maps) {
            const Image image = to_image(*map, palette);
            map->reformat(bits_per_pixel);
            paint(*map, image, palette);
        }
    }
}

void Files::check(std::vector<std::string>& violations) const {
    for (const auto& [number, file] : files_) {
        file->record.check(std::to_string(number), violations);
        for (const auto& [graph, map] : file->maps)
            map->check(std::to_string(number) + "/" + std::to_string(graph), violations);
    }
}

}  // namespace host
