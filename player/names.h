// Helps people who mistyped a name.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace player {

// " (did you mean "speed"?)" for the closest of `names`, or, when none is close, " (there are: a, b, c)".
std::string suggestion(std::string_view wrong, const std::vector<std::string>& names);

}  // namespace player
