#include "player/common/names.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace player {
namespace {

// Distance in single letters put in, left out or exchanged, and neighbours swapped (optimal string
// alignment).
std::size_t edits(std::string_view a, std::string_view b) {
    std::vector<std::size_t> row(b.size() + 1), above, second_above;
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < a.size(); ++i) {
        second_above = std::exchange(above, row);
        row[0] = i + 1;
        for (std::size_t j = 0; j < b.size(); ++j) {
            row[j + 1] = std::min({above[j] + (a[i] != b[j]), row[j] + 1, above[j + 1] + 1});
            if (i > 0 && j > 0 && a[i] == b[j - 1] && a[i - 1] == b[j])
                row[j + 1] = std::min(row[j + 1], second_above[j - 1] + 1);
        }
    }
    return row.back();
}

}  // namespace

std::optional<std::string> closest(std::string_view wrong, const std::vector<std::string>& names) {
    return closest(wrong, names, wrong.size());
}

std::optional<std::string> closest(std::string_view wrong, const std::vector<std::string>& names,
                                   std::size_t length) {
    const auto best = std::min_element(names.begin(), names.end(), [wrong](const auto& a, const auto& b) {
        return edits(wrong, a) < edits(wrong, b);
    });
    if (best == names.end()) return std::nullopt;
    return edits(wrong, *best) <= length / 3 ? std::optional(*best) : std::nullopt;
}

std::string suggestion(std::string_view wrong, const std::vector<std::string>& names) {
    if (names.empty()) return {};
    if (const auto name = closest(wrong, names)) return " (did you mean \"" + *name + "\"?)";
    std::string list;
    for (const auto& name : names) list += (list.empty() ? "" : ", ") + name;
    return " (there are: " + list + ")";
}

}  // namespace player
