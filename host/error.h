// What can go wrong, in two kinds: exceptions for whoever uses this library, records for what a script did.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

namespace host {

// Thrown at misuse of the library: a module that cannot be loaded, a name that does not exist, a number out
// of range. Never thrown through a frame of the module.
class Error : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

// The result of a script function that failed.
inline constexpr std::int32_t failure = INT32_MIN;

// A script error as the module raised it. The module goes on; nothing is thrown.
struct ScriptError {
    std::int32_t code;
    std::string function;   // upper-case name of the script function, or of the module
    std::int32_t third;     // 0 by contract
    std::int32_t argument;  // 1-based index of the argument at fault, 0: none in particular
    std::int32_t value;     // the value at fault

    // One line for people: "SCROLL_START: scroll number out of range (error 107, argument 1, value 12)".
    [[nodiscard]] std::string text() const;

    bool operator==(const ScriptError&) const = default;
};

// The message of an error code; "unknown error" for a code without one.
[[nodiscard]] const char* error_text(std::int32_t code);

}  // namespace host
