// For tools that watch a game: what an engine tells while it runs. Watching changes nothing that is drawn.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "host/blit_lists.h"

namespace host {

// None of these may throw: the module may be on the stack.
class Observer {
  public:
    virtual ~Observer() = default;

    // An entry of the main list, right before and right after its routine runs.
    virtual void before_drawing(const __RVKBlit2D__&) {}
    virtual void after_drawing(const __RVKBlit2D__&) {}
    // A list has been brought into drawing order, the main list by the engine, another one by the module.
    virtual void sorted(const BlitQueue&) {}
    // A script function has come back.
    virtual void called(std::string_view /*name*/, std::span<const std::int32_t> /*arguments*/,
                        std::int32_t /*result*/) {}
};

}  // namespace host
