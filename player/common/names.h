// Helps people who mistyped a name.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace player {

// The closest of `names` to a mistyped one, the first of equals; nothing when none is close, which is one
// wrong letter in three of the name's, or of as many as `length` says.
std::optional<std::string> closest(std::string_view wrong, const std::vector<std::string>& names);
std::optional<std::string> closest(std::string_view wrong, const std::vector<std::string>& names,
                                   std::size_t length);

// " (did you mean "speed"?)" for the closest of `names`, or, when none is close, " (there are: a, b, c)".
std::string suggestion(std::string_view wrong, const std::vector<std::string>& names);

}  // namespace player
