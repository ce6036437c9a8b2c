// What was measured, on its way to the reader: a line of CSV each, and tables of the drawn scenes.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "bench/pictures.h"
#include "bench/scene.h"
#include "bench/timing.h"

namespace bench {

// One timed thing and what it is compared to.
struct Measurement {
    std::string part;      // draw, fill, move, growth
    std::string pictures;  // name of their kind
    std::string family;    // of scenes, or what is varied
    std::string variant;   // drawing rule, or direction of a move
    std::int32_t bits_per_pixel = 0;
    Size view;
    std::string value;      // motion, pixels moved, number of processes ...
    std::string contender;  // module, memcpy, SDL2, pixman ...
    double microseconds = 0;
    double ratio = 0;  // to the part's base: memcpy, a refill, the first of a growing series

    // From family to value; of drawn scenes from the pictures on. What --filter sees of drawing and fills.
    [[nodiscard]] std::string name() const;
};

// What the module's time is divided by.
enum class Base { memcpy, straight, other, peer, run_length };

// A drawn scene: the module's time over each base that it was timed beside.
struct Drawn {
    const Kind* kind;
    const Family* family;
    std::int32_t bits_per_pixel;
    Size view;
    Motion motion;
    double microseconds;  // of a frame by the module
    std::map<Base, double> ratios;
};

// The head of a table, printed before its first row, so that a table without rows leaves nothing.
class Heading {
  public:
    explicit Heading(std::string text) : text_(std::move(text)) {}
    void print_once();

  private:
    std::string text_;
};

class Report {
  public:
    [[nodiscard]] bool empty() const { return measurements_.empty(); }
    void add(Measurement measurement) { measurements_.push_back(std::move(measurement)); }
    void add(Drawn scene) { drawn_.push_back(std::move(scene)); }

    // tables.cpp: the verdict on each kind of pictures, then families and views, by geometric means over the
    // moving scenes. Nothing when no scene was drawn.
    void print_tables() const;
    // Errors: std::runtime_error for a file that cannot be written.
    void write_csv(const std::string& path) const;

  private:
    std::vector<Measurement> measurements_;
    std::vector<Drawn> drawn_;
};

}  // namespace bench
