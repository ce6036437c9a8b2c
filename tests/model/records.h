// The module's own record of a scroll, held against what its fields mean.
#pragma once

#include <string>

#include "module/state/scroll_table.h"
#include "tests/model/model.h"
#include "tests/module/allocation.h"

namespace model {

// What is wrong with a record by itself, whatever was called: a running scroll has the buffers of its planes
// and its read pointers inside them, an idle one has none. Empty: nothing.
std::string trouble_of(const scroll2d::ScrollRecord& r, const tests::ModuleAllocator& memory);

// The fields in which a record differs from the model's scroll, a line each.
std::string differences(const Scroll& expected, const scroll2d::ScrollRecord& actual);

}  // namespace model
