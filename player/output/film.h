// Films of a run: animated PNG by our own hand, other formats by way of ffmpeg.
#pragma once

#include <cstdio>
#include <memory>
#include <string>

#include "player/common/film_format.h"
#include "player/common/picture.h"

namespace player {

// Takes the pictures of a film one by one, 60 of them a second, all of the size that was given at the start,
// opaque and without palettes. Errors, of the functions below as well: std::runtime_error that says what is
// wrong, and leaves the name of the film to its owner.
class Film {
  public:
    virtual ~Film() = default;
    virtual void add(const Picture& picture) = 0;
    // After the last picture; before that the file is no film yet.
    virtual void finish() = 0;
};

// animated_png.cpp: every pixel as it is. Needs no other program. The file stays open.
std::unique_ptr<Film> make_animated_png(std::FILE* file, int width, int height);

// ffmpeg.cpp: the other formats, at `path`, whose ending is the format's. GIF has 30 pictures a second, up to
// 256 colours each; video has its colours by BT.709. The same pictures give the same bytes, as long as ffmpeg
// is the same.
std::unique_ptr<Film> make_ffmpeg_film(const std::string& path, FilmFormat format, int width, int height);
// Throws when the program is not there to be run, telling how to get it.
void require_ffmpeg();

}  // namespace player
