// Animated PNGs, taken apart again.
#include <doctest/doctest.h>
#include <zlib.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>

#include "player/output/film.h"

using namespace player;
using Bytes = std::vector<std::uint8_t>;

namespace {

struct Chunk {
    std::string type;
    Bytes data;
};

std::uint32_t number(const Bytes& bytes, std::size_t at) {
    std::uint32_t value = 0;
    for (std::size_t i = at; i < at + 4; ++i) value = value << 8 | bytes.at(i);
    return value;
}
void append(Bytes& bytes, std::uint32_t value) {
    for (int shift = 24; shift >= 0; shift -= 8) bytes.push_back(static_cast<std::uint8_t>(value >> shift));
}

std::vector<Chunk> chunks_of(const Bytes& file) {
    std::vector<Chunk> chunks;
    for (std::size_t at = 8; at < file.size();) {
        const std::size_t length = number(file, at);
        const auto begin = file.begin() + static_cast<std::ptrdiff_t>(at) + 4;
        const Bytes checked(begin, begin + 4 + static_cast<std::ptrdiff_t>(length));
        REQUIRE(crc32(0, checked.data(), static_cast<uInt>(checked.size())) == number(file, at + 8 + length));
        chunks.push_back(
            {std::string(checked.begin(), checked.begin() + 4), Bytes(checked.begin() + 4, checked.end())});
        at += 12 + length;
    }
    return chunks;
}

// A still PNG of one picture of the film, put together from its chunks and read by libpng.
Picture still(const Bytes& header, const Bytes& control, const Bytes& data, const std::string& path) {
    Bytes ihdr = header;
    std::copy(control.begin() + 4, control.begin() + 12, ihdr.begin());
    Bytes file{0x89, 'P', 'N', 'G', '\r', '\n', 0x1a, '\n'};
    for (const Chunk& chunk : {Chunk{"IHDR", ihdr}, Chunk{"IDAT", data}, Chunk{"IEND", {}}}) {
        append(file, static_cast<std::uint32_t>(chunk.data.size()));
        Bytes body(chunk.type.begin(), chunk.type.end());
        body.insert(body.end(), chunk.data.begin(), chunk.data.end());
        file.insert(file.end(), body.begin(), body.end());
        append(file, static_cast<std::uint32_t>(crc32(0, body.data(), static_cast<uInt>(body.size()))));
    }
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(file.data()), static_cast<std::streamsize>(file.size()));
    return read_png(path);
}

}  // namespace

TEST_CASE("every picture of an animated PNG is the picture that was added") {
    const auto folder =
        std::filesystem::temp_directory_path() / ("film" + std::to_string(std::random_device{}()));
    std::filesystem::create_directory(folder);
    const std::string path = folder / "film.png";
    std::mt19937 random(3);
    std::vector<Picture> pictures;
    Picture picture(37, 23, {10, 20, 30, 255});
    for (int i = 0; i < 40; ++i) {
        // Nothing, one pixel, a corner, everything.
        const unsigned count = (i % 4 == 0) ? 0 : 1U << (random() % 12);
        for (unsigned j = 0; j < count; ++j)
            picture.at(static_cast<int>(random() % 37), static_cast<int>(random() % 23)) = {
                static_cast<std::uint8_t>(random()), static_cast<std::uint8_t>(random()), 0, 255};
        pictures.push_back(picture);
    }
    const auto film = make_animated_png(path, 37, 23);
    for (const Picture& added : pictures) film->add(added);
    film->finish();

    std::ifstream file(path, std::ios::binary);
    const Bytes bytes{std::istreambuf_iterator<char>(file), {}};
    const std::vector<Chunk> chunks = chunks_of(bytes);
    REQUIRE(chunks.front().type == "IHDR");
    REQUIRE(chunks.at(1).type == "acTL");
    CHECK(number(chunks.at(1).data, 0) == pictures.size());
    CHECK(chunks.back().type == "IEND");
    Picture shown(37, 23);
    std::size_t index = 0;
    std::uint32_t sequence = 0;
    const Bytes* control = nullptr;
    for (const Chunk& chunk : chunks) {
        if (chunk.type == "fcTL" || chunk.type == "fdAT") REQUIRE(number(chunk.data, 0) == sequence++);
        if (chunk.type == "fcTL") control = &chunk.data;
        if (chunk.type != "IDAT" && chunk.type != "fdAT") continue;
        REQUIRE(control);
        const Bytes data(chunk.data.begin() + (chunk.type == "fdAT" ? 4 : 0), chunk.data.end());
        const Picture part = still(chunks.front().data, *control, data, folder / "still.png");
        paste(shown, part, static_cast<int>(number(*control, 12)), static_cast<int>(number(*control, 16)));
        const bool same =
            std::memcmp(shown.pixels.data(), pictures.at(index).pixels.data(), 4 * shown.pixels.size()) == 0;
        CHECK(same);
        ++index;
    }
    CHECK(index == pictures.size());
    std::filesystem::remove_all(folder);
}
