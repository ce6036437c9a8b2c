// A host that stops scrolls from within a slot which the module calls.
#pragma once

#include <functional>
#include <memory>

#include "host/engine.h"

namespace model {

inline constexpr const char* kInterruptedSlots[] = {
    "DeleteProcess", "FirstProcessOfType", "ProcessExists", "GetMap",
    "GetFile",       "RegionCount",        "NewBlit",       "SelectBlitList"};

// Has the slot of that number call `stop` as often as the module calls it, as long as the result lives.
std::shared_ptr<void> interrupt(host::Engine& engine, std::size_t slot, const std::function<void()>& stop);

}  // namespace model
