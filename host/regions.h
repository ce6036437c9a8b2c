// The numbered regions of the screen.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host/memory.h"
#include "module/contract/host_records.h"

namespace host {

// Region 0 is the whole screen: the engine defines it at each video mode. A region that was never defined
// holds zeros; one that was undefined keeps its last rectangle.
class Regions {
  public:
    // Keeps `published.Regions` at the table.
    Regions(std::int32_t count, Fence fence, Graphics2DInterface& published);

    [[nodiscard]] std::int32_t count() const { return static_cast<std::int32_t>(defined_.size()); }
    // A table of another length, at another address. Errors: Error for a count below 1.
    void resize(std::int32_t count);

    // Edges are inclusive and taken as they are, turned inside out or off the screen. Note the order in the
    // record. Errors of these: Error for a number out of range.
    void define(std::int32_t region, const __RVKRegion__& edges);
    void define(std::int32_t region, std::int32_t left, std::int32_t top, std::int32_t right,
                std::int32_t bottom);
    void undefine(std::int32_t region);
    [[nodiscard]] __RVKRegion__& at(std::int32_t region);

    [[nodiscard]] bool defined(std::int32_t region) const;  // false for a number out of range
    void check(std::vector<std::string>& violations) const;

  private:
    [[nodiscard]] __RVKRegion__* table();

    Fence fence_;
    Graphics2DInterface& published_;
    Memory memory_;
    std::vector<bool> defined_;
};

}  // namespace host
