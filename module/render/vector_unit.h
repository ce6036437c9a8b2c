// The vector units that the loops over rows are built for, and which of them is taken.
#pragma once

namespace scroll2d {

// The narrowest first.
#if defined(__i386__)
enum class VectorUnit { sse2, sse4, avx2 };
constexpr VectorUnit vector_units[] = {VectorUnit::sse2, VectorUnit::sse4, VectorUnit::avx2};
constexpr VectorUnit any_unit = VectorUnit::avx2;
#else
enum class VectorUnit { built_in };  // what the compiler's flags name: NEON, SIMD128 or none
constexpr VectorUnit vector_units[] = {VectorUnit::built_in};
constexpr VectorUnit any_unit = VectorUnit::built_in;
#endif

// The widest unit that may be taken: any, until a test asks for a narrower one.
extern VectorUnit widest_unit;

// Finds out which units the processor has. Before, it passes for one that has the narrowest only.
void find_vector_units();

// The widest unit that may be taken, of those that the processor has.
VectorUnit vector_unit();

}  // namespace scroll2d
