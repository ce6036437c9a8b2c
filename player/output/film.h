// Films of a run: animated PNG by our own hand, other formats by way of ffmpeg.
#pragma once

#include <memory>
#include <string>

#include "player/common/picture.h"

namespace player {

// Takes the pictures of a film one by one, 60 of them a second, all of the size that was given at the start.
class Film {
  public:
    virtual ~Film() = default;
    virtual void add(const Picture& picture) = 0;
    // After the last picture; before that the file is no film yet.
    virtual void finish() = 0;
};

// What is wrong with a film's name: it must end with a format that there is. Empty: nothing.
std::string film_problem(const std::string& path);

// Errors of all of these, and of their films: std::runtime_error that names the file and what is wrong.

// animated_png.cpp: every pixel as it is. Needs no other program.
std::unique_ptr<Film> make_animated_png(const std::string& path, int width, int height);

// ffmpeg.cpp: .gif (30 pictures a second, up to 256 colours each), .mp4 and .webm. The same pictures give the
// same bytes, as long as ffmpeg is the same.
std::unique_ptr<Film> make_ffmpeg_film(const std::string& path, int width, int height);
// Throws when the program is not there to be run, telling how to get it.
void require_ffmpeg(const std::string& path);

}  // namespace player
