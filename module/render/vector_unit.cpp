#include "module/render/vector_unit.h"

#include <algorithm>

namespace scroll2d {
namespace {

VectorUnit processors_best = vector_units[0];

}  // namespace

VectorUnit widest_unit = any_unit;

// A file without start-up code, as on Windows, has nobody else who would initialise what
// __builtin_cpu_supports reads.
void find_vector_units() {
#if defined(__i386__)
    __builtin_cpu_init();
    processors_best = __builtin_cpu_supports("avx2")     ? VectorUnit::avx2
                      : __builtin_cpu_supports("sse4.1") ? VectorUnit::sse4
                                                         : VectorUnit::sse2;
#endif
}

VectorUnit vector_unit() {
    return std::min(widest_unit, processors_best);
}

}  // namespace scroll2d
