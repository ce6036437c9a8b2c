// Numbers as the model's parts use them.
#pragma once

#include <algorithm>
#include <cstdint>

#include "tests/model/model.h"

namespace model {

constexpr std::int32_t kScrollsMax = 9;

template <class Table>
auto& at(Table& table, Int index) {
    return table[static_cast<std::size_t>(index)];
}

inline std::int32_t wrap(Int value) {
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(value));
}
inline std::int32_t saturate(Int value) {
    return static_cast<std::int32_t>(std::clamp<Int>(value, INT32_MIN, INT32_MAX));
}
inline bool in_range(std::int32_t n) {
    return n >= 0 && n <= kScrollsMax;
}
inline bool bit(std::int32_t mask, std::int32_t i) {
    return (static_cast<std::uint32_t>(mask) >> i & 1) != 0;
}
inline bool shown(std::int32_t mask, std::int32_t n) {
    return mask == 0 || bit(mask, n);
}
template <class Pointer>
inline std::int32_t address(Pointer* p) {
    return static_cast<std::int32_t>(reinterpret_cast<std::uintptr_t>(p));
}

}  // namespace model
