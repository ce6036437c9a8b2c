// What was measured, on its way to the reader: a line of CSV each, and the table of drawing figures.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "bench/scene.h"
#include "bench/timing.h"

namespace bench {

// One timed thing and what it is compared to.
struct Measurement {
    std::string part;     // draw, fill, move, growth
    std::string family;   // of scenes, or what is varied
    std::string variant;  // drawing rule, or direction of a move
    std::int32_t bits_per_pixel = 0;
    Size view;
    std::string value;      // motion, pixels moved, number of processes ...
    std::string contender;  // module, memcpy, SDL2, pixman ...
    double microseconds = 0;
    double ratio = 0;  // to the part's base: memcpy, a refill, the first of a growing series

    [[nodiscard]] std::string name() const;  // from family to value; of drawing and fills, what --filter sees
};

// The figures of drawn scenes, for the table.
struct DrawFigures {
    std::vector<double> per_memcpy;
    std::vector<double> per_peer;        // empty when the peers were left out
    std::vector<double> per_run_length;  // against SDL2 with run-length encoding; often empty
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
    void add_drawn(const Family& family, std::int32_t bits, double per_memcpy);
    void add_peer(const Family& family, std::int32_t bits, double ratio);
    void add_run_length(const Family& family, std::int32_t bits, double ratio);

    // The table: per family and depth the geometric mean and the worst time / memcpy of the view, and the
    // geometric mean of time / best peer where there are peers. Nothing when no scene was drawn.
    void print_table() const;
    // Errors: std::runtime_error for a file that cannot be written.
    void write_csv(const std::string& path) const;

  private:
    using Row = std::pair<const Family*, std::int32_t>;  // family and depth
    std::vector<Measurement> measurements_;
    std::map<Row, DrawFigures> drawn_;
};

}  // namespace bench
