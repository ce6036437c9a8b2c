#include "player/names.h"

#include <algorithm>
#include <numeric>

namespace player {
namespace {

// Levenshtein distance: single letters put in, left out or exchanged.
std::size_t edits(std::string_view a, std::string_view b) {
    std::vector<std::size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < a.size(); ++i) {
        std::size_t diagonal = row[0];
        row[0] = i + 1;
        for (std::size_t j = 0; j < b.size(); ++j) {
            const std::size_t exchanged = diagonal + (a[i] != b[j]);
            diagonal = row[j + 1];
            row[j + 1] = std::min({exchanged, row[j] + 1, diagonal + 1});
        }
    }
    return row.back();
}

}  // namespace

std::string suggestion(std::string_view wrong, const std::vector<std::string>& names) {
    if (names.empty()) return {};
    const auto closest = std::min_element(names.begin(), names.end(), [wrong](const auto& a, const auto& b) {
        return edits(wrong, a) < edits(wrong, b);
    });
    if (edits(wrong, *closest) <= std::max<std::size_t>(1, (wrong.size() + 1) / 3))
        return " (did you mean \"" + *closest + "\"?)";
    std::string list;
    for (const auto& name : names) list += (list.empty() ? "" : ", ") + name;
    return " (there are: " + list + ")";
}

}  // namespace player
