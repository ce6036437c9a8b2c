#include "host/error.h"

#include <algorithm>
#include <array>
#include <utility>

namespace host {

namespace {

constexpr std::array<std::pair<std::int32_t, const char*>, 9> error_texts{{
    {100, "out of memory for the buffer of a plane"},
    {107, "scroll number out of range"},
    {108, "region number out of range, or the region is not defined"},
    {109, "file number out of range"},
    {110, "graph number out of range"},
    {111, "the file holds no maps"},
    {112, "neither of the two maps exists"},
    {131, "scroll number out of range"},
    {146, "the view would be empty"},
}};

}  // namespace

const char* error_text(std::int32_t code) {
    const auto* row =
        std::find_if(error_texts.begin(), error_texts.end(), [&](const auto& r) { return r.first == code; });
    return row == error_texts.end() ? "unknown error" : row->second;
}

std::string ScriptError::text() const {
    std::string line = function + ": " + error_text(code) + " (error " + std::to_string(code);
    if (argument != 0) line += ", argument " + std::to_string(argument);
    return line + ", value " + std::to_string(value) + ")";
}

}  // namespace host
