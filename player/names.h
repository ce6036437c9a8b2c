// Helps people who mistyped a name.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace player {

// The closest of `names` to a mistyped one, the first of equals; nothing when none is close.
std::optional<std::string> closest(std::string_view wrong, const std::vector<std::string>& names);

// " (did you mean "speed"?)" for the closest of `names`, or, when none is close, " (there are: a, b, c)".
std::string suggestion(std::string_view wrong, const std::vector<std::string>& names);

}  // namespace player
