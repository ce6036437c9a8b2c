#pragma once

#include <optional>
#include <string>

#include "bench/timing.h"

namespace bench {

struct Options {
    std::string module;  // path of the shared object
    std::string opened;  // the same linked for tests, whose straight loops are drawn beside it; empty: none
    std::string other;   // one to draw the same scenes beside it; empty: none
    std::string csv;     // empty: none
    std::string sheet;   // file for a sheet of the kinds of pictures, in place of measuring; empty: none
    std::string filter;  // only measurements whose name contains it; empty: all
    std::string kind;    // of pictures, for drawing; empty: all
    std::string only;    // empty: all parts; otherwise draw, fill, move, growth or frame
    bool quick = false;
    bool peers = true;        // otherwise module and memcpy alone
    bool run_length = false;  // one more contender: SDL2 with run-length encoded surfaces

    [[nodiscard]] Plan plan() const { return quick ? Plan{2, 2, 120, 3} : Plan{}; }
    [[nodiscard]] bool wants(const std::string& name) const { return name.find(filter) != std::string::npos; }
};

// Nothing when there is nothing to run: help was shown, or an error; `exit_status` says which.
[[nodiscard]] std::optional<Options> parse_options(int argc, char** argv, int& exit_status);

}  // namespace bench
