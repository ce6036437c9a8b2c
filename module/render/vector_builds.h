// The loops over rows, built once for each vector unit. Here alone the processor's kind matters to them.
#pragma once

#include <cstdint>

#include "module/render/row_loops.h"
#include "module/render/vector_unit.h"

namespace scroll2d {

// A vector loop with all that it calls. In builds without optimisation it is a plain function.
#if defined(__OPTIMIZE__)
#define SCROLL2D_VECTOR_LOOP __attribute__((flatten, noinline))
#define SCROLL2D_VECTOR_LOOP_FOR(unit) __attribute__((target(unit), flatten, noinline))
#else
#define SCROLL2D_VECTOR_LOOP
#define SCROLL2D_VECTOR_LOOP_FOR(unit)
#endif

// Each build has the parameters of lay_rows_in_groups. The loop over the rows belongs to it: on a row of 320
// bytes a call would cost as much as a quarter of the pixels.
#if defined(__i386__)

template <bool asks, class... Arguments>
SCROLL2D_VECTOR_LOOP_FOR("avx2")
void lay_rows_avx2(const Arguments&... arguments) {
    lay_rows_in_groups<asks, Registers{32, true}>(arguments...);
}
template <bool asks, class... Arguments>
SCROLL2D_VECTOR_LOOP_FOR("sse4.1")
void lay_rows_sse4(const Arguments&... arguments) {
    lay_rows_in_groups<asks, Registers{16, true}>(arguments...);
}
template <bool asks, class... Arguments>
SCROLL2D_VECTOR_LOOP_FOR("sse2")
void lay_rows_sse2(const Arguments&... arguments) {
    lay_rows_in_groups<asks, Registers{16, false}>(arguments...);
}

template <bool asks, class... Arguments>
constexpr auto vector_build(VectorUnit unit) {
    return unit == VectorUnit::avx2   ? lay_rows_avx2<asks, Arguments...>
           : unit == VectorUnit::sse4 ? lay_rows_sse4<asks, Arguments...>
                                      : lay_rows_sse2<asks, Arguments...>;
}

#else

template <bool asks, class... Arguments>
SCROLL2D_VECTOR_LOOP void lay_rows_built_in(const Arguments&... arguments) {
    lay_rows_in_groups<asks, Registers{16, true}>(arguments...);
}

template <bool asks, class... Arguments>
constexpr auto vector_build(VectorUnit) {
    return lay_rows_built_in<asks, Arguments...>;
}

#endif

// Lays rows first to end - 1 by the build for one vector unit, asking for simple cases, if the rule has any,
// or not. One call for all builds, by its address, keeps the code of each rule small.
template <class Rule, class... Rows>
[[gnu::noinline]] void lay_rows_by(VectorUnit unit, bool asks, std::int32_t first, std::int32_t end,
                                   std::int32_t width, const Rule& rule, const Rows&... rows) {
    auto lay = vector_build<false, std::int32_t, std::int32_t, std::int32_t, Rule, Rows...>(unit);
    if constexpr (has_cases<Rule>) {
        if (asks) lay = vector_build<true, std::int32_t, std::int32_t, std::int32_t, Rule, Rows...>(unit);
    }
    lay(first, end, width, rule, rows...);
}

}  // namespace scroll2d
