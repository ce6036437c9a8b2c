#include "player/common/film_format.h"

#include <array>
#include <filesystem>
#include <utility>

namespace player {
namespace {

constexpr std::array<std::pair<const char*, FilmFormat>, 4> formats{{
    {".mp4", FilmFormat::mp4},
    {".webm", FilmFormat::webm},
    {".gif", FilmFormat::gif},
    {".png", FilmFormat::png},
}};

}  // namespace

std::optional<FilmFormat> film_format(const std::string& path) {
    const std::string ending = std::filesystem::path(path).extension().string();
    for (const auto& [known, format] : formats)
        if (ending == known) return format;
    return std::nullopt;
}

std::string film_endings() {
    std::string text;
    for (std::size_t i = 0; i < formats.size(); ++i)
        text += (i == 0 ? "" : i + 1 < formats.size() ? ", " : " or ") + std::string(formats[i].first);
    return text;
}

}  // namespace player
