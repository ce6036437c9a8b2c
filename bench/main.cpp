// scroll2d_bench: how fast the module draws, beside memcpy and two general 2-D libraries.
#include <cstdio>
#include <exception>
#include <fstream>
#include <stdexcept>

#include "bench/options.h"
#include "bench/parts.h"

namespace bench {
namespace {

// The model as the system tells it, and the vector unit whose loops the module takes.
void print_processor() {
    std::ifstream file("/proc/cpuinfo");
    std::string line, model = "unknown processor";
    while (std::getline(file, line))
        if (line.rfind("model name", 0) == 0) model = line.substr(line.find(':') + 2);
    __builtin_cpu_init();
    const char* unit = __builtin_cpu_supports("avx2")     ? "AVX2"
                       : __builtin_cpu_supports("sse4.1") ? "SSE4.1"
                                                          : "SSE2";
    std::printf("%s, vector unit %s\n", model.c_str(), unit);
}

void run(const Options& options) {
    const auto wanted = [&](const char* part) { return options.only.empty() || options.only == part; };
    if (!options.sheet.empty()) return write_sheet(options.sheet);
    std::setvbuf(stdout, nullptr, _IOLBF, 0);  // each row as it is known, into a file too
    print_processor();
    Report report;
    if (wanted("draw")) measure_drawing(options, report);
    if (wanted("fill")) measure_fills(options, report);
    if (wanted("move")) measure_moves(options, report);
    if (wanted("growth")) measure_growth(options, report);
    if (wanted("frame")) measure_frames(options, report);
    if (report.empty()) throw std::runtime_error("no measurement's name contains \"" + options.filter + "\"");
    if (!options.csv.empty()) report.write_csv(options.csv);
}

}  // namespace
}  // namespace bench

int main(int argc, char** argv) {
    int exit_status = 0;
    const auto options = bench::parse_options(argc, argv, exit_status);
    if (!options) return exit_status;
    try {
        bench::run(*options);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "scroll2d_bench: %s\n", error.what());
        return 1;
    }
    return 0;
}
