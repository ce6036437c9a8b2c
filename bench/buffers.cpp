#include "bench/parts.h"
namespace bench {
void measure_fills(const Options&, Report&) {}
void measure_moves(const Options&, Report&) {}
}  // namespace bench
