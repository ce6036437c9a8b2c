// Script functions: bound by name and number of arguments, called with a stack of arguments.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "host/error.h"
#include "module/contract/host_records.h"

namespace host {

struct ScriptConstant {
    std::string name;
    std::int32_t value;
};

struct ScriptFunction {
    std::string name;
    std::int32_t argument_count;
    std::string return_type;  // "I"
    std::int32_t (*handler)();
};

struct CallResult {
    std::int32_t value = 0;           // what the handler gave to ReturnInt
    std::vector<ScriptError> errors;  // raised during this call, in order
    [[nodiscard]] bool failed() const { return value == failure; }
};

// Reads "name(I,I,I)". Errors: Error for anything else.
[[nodiscard]] ScriptFunction parse_function(const FunctionRow& row);

// The handler for a name and a number of arguments. Errors: Error that says which names there are, or how
// many arguments the name takes.
[[nodiscard]] const ScriptFunction& resolve(std::span<const ScriptFunction> functions, std::string_view name,
                                            std::size_t argument_count);

// The arguments and the result of a call while its handler runs.
class CallFrame {
  public:
    explicit CallFrame(std::span<const std::int32_t> arguments)
        : arguments_(arguments), left_(arguments.size()) {}

    [[nodiscard]] std::int32_t argument_count() const { return static_cast<std::int32_t>(arguments_.size()); }
    [[nodiscard]] std::size_t left() const { return left_; }
    // The last argument that was not popped yet; false when there is none.
    bool pop(std::int32_t& value);

    // What ReturnInt returns: made from the value, yet another number, so that a handler which returns the
    // value itself is found out.
    [[nodiscard]] std::int32_t token() const { return value ^ 0x5A17C0DE; }

    bool returned = false;
    std::int32_t value = 0;

  private:
    std::span<const std::int32_t> arguments_;
    std::size_t left_;
};

}  // namespace host
