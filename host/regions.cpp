#include "host/regions.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "host/error.h"

namespace host {

Regions::Regions(std::int32_t count, Fence fence, Graphics2DInterface& published)
    : fence_(fence), published_(published) {
    resize(count);
}

void Regions::resize(std::int32_t count) {
    if (count < 1) throw Error("there has to be a region 0, not " + std::to_string(count) + " regions");
    Memory larger(static_cast<std::size_t>(count) * sizeof(__RVKRegion__), fence_);
    if (memory_.size() != 0)
        std::memcpy(larger.data(), memory_.data(), std::min(larger.size(), memory_.size()));
    memory_ = std::move(larger);
    defined_.resize(static_cast<std::size_t>(count));
    published_.Regions = table();
}

__RVKRegion__* Regions::table() {
    return reinterpret_cast<__RVKRegion__*>(memory_.data());
}

__RVKRegion__& Regions::at(std::int32_t region) {
    if (region < 0 || region >= count())
        throw Error("region " + std::to_string(region) + " is not one of 0 to " +
                    std::to_string(count() - 1));
    return table()[region];
}

void Regions::define(std::int32_t region, const __RVKRegion__& edges) {
    at(region) = edges;
    defined_[static_cast<std::size_t>(region)] = true;
}

void Regions::define(std::int32_t region, std::int32_t left, std::int32_t top, std::int32_t right,
                     std::int32_t bottom) {
    define(region, {.x = left, .x2 = right, .y = top, .y2 = bottom});
}

void Regions::undefine(std::int32_t region) {
    static_cast<void>(at(region));
    defined_[static_cast<std::size_t>(region)] = false;
}

bool Regions::defined(std::int32_t region) const {
    return region >= 0 && region < count() && defined_[static_cast<std::size_t>(region)];
}

void Regions::check(std::vector<std::string>& violations) const {
    if (!memory_.slack_untouched()) violations.emplace_back("region table: memory beside it was written");
}

}  // namespace host
