// A host that stops scrolls from within a slot which the module calls.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "host/engine.h"

namespace model {

struct InterruptedSlot {
    std::string name;
    // Has the slot call `stop` as often as the module calls it, as long as the result lives.
    std::shared_ptr<void> (*interrupt)(host::Engine& engine, const std::function<void()>& stop);
};
extern const std::vector<InterruptedSlot> kInterruptedSlots;

}  // namespace model
