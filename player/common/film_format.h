// The formats of films.
#pragma once

#include <optional>
#include <string>

namespace player {

// All but `png`, the animated PNG, are made by ffmpeg.
enum class FilmFormat { mp4, webm, gif, png };

// By the ending of the film's name; nothing when no format has it.
std::optional<FilmFormat> film_format(const std::string& path);

// ".mp4, .webm, .gif or .png"
std::string film_endings();

}  // namespace player
