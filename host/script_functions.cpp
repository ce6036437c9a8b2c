#include "host/script_functions.h"

#include <algorithm>
#include <cctype>
#include <optional>

namespace host {

namespace {

bool is_name(std::string_view text) {
    const auto word = [](char c) { return c == '_' || std::isalnum(static_cast<unsigned char>(c)) != 0; };
    return !text.empty() && std::isdigit(static_cast<unsigned char>(text.front())) == 0 &&
           std::all_of(text.begin(), text.end(), word);
}

// The number of types in "I,I,I"; nothing for a list that holds anything but I.
std::optional<std::size_t> count_types(std::string_view list) {
    for (std::size_t i = 0; i < list.size(); ++i)
        if (list[i] != (i % 2 == 0 ? 'I' : ',')) return std::nullopt;
    if (!list.empty() && list.back() == ',') return std::nullopt;
    return (list.size() + 1) / 2;
}

}  // namespace

ScriptFunction parse_function(const FunctionRow& row) {
    const std::string signature = row.signature;
    const std::size_t open = std::min(signature.find('('), signature.size());
    const std::string name = signature.substr(0, open);
    std::optional<std::size_t> count;
    if (is_name(name) && open + 2 <= signature.size() && signature.back() == ')')
        count = count_types(std::string_view(signature).substr(open + 1, signature.size() - open - 2));
    if (!count) throw Error("the signature \"" + signature + "\" is not of the form name(I,I,...)");
    const std::string return_type = row.return_type == nullptr ? "" : row.return_type;
    if (return_type != "I") throw Error(signature + " returns \"" + return_type + "\", not \"I\"");
    if (row.zero != 0) throw Error("the third word of " + signature + " is not 0");
    if (row.handler == nullptr) throw Error(signature + " has no handler");
    return {name, static_cast<std::int32_t>(*count), return_type, row.handler};
}

const ScriptFunction& resolve(std::span<const ScriptFunction> functions, std::string_view name,
                              std::size_t argument_count) {
    std::string counts;
    std::vector<std::string> names;
    for (const ScriptFunction& function : functions) {
        names.push_back(function.name);
        if (function.name != name) continue;
        if (static_cast<std::size_t>(function.argument_count) == argument_count) return function;
        counts += (counts.empty() ? "" : " or ") + std::to_string(function.argument_count);
    }
    if (!counts.empty())
        throw Error(std::string(name) + " takes " + counts + " arguments, not " +
                    std::to_string(argument_count));
    std::sort(names.begin(), names.end());
    names.erase(std::unique(names.begin(), names.end()), names.end());
    std::string known;
    for (const std::string& n : names) known += (known.empty() ? "" : ", ") + n;
    throw Error("there is no function '" + std::string(name) +
                "'; there are: " + (known.empty() ? "none" : known));
}

bool CallFrame::pop(std::int32_t& result) {
    if (left_ == 0) return false;
    result = arguments_[--left_];
    return true;
}

}  // namespace host
