// The vector units of x86 that the loops over rows are built for.
#pragma once

namespace scroll2d {

enum class VectorUnit { sse2, sse4, avx2 };  // the narrowest first

// The widest unit that may be taken: any, until a test asks for a narrower one.
extern VectorUnit widest_unit;

// The widest unit of those that this processor has.
VectorUnit vector_unit();

}  // namespace scroll2d
