// Script globals: compiled from a module's declarations, kept in one data area that may move.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/memory.h"

namespace host {

struct GlobalField {
    std::string name;
    std::int32_t default_value = 0;
};

// An array of structs of 32-bit integers: elements back to back, fields in declaration order.
struct GlobalStruct {
    std::string name;
    std::int32_t count = 1;  // elements
    std::size_t offset = 0;  // bytes from the start of the data area to element 0
    std::vector<GlobalField> fields;

    [[nodiscard]] std::size_t element_size() const { return 4 * fields.size(); }  // bytes
    [[nodiscard]] std::optional<std::size_t> field_index(std::string_view field) const;
};

// Compiles declarations of the form
//     struct name[count] int field = default; int field; ... end
// any number of them, blanks and line ends as you please, the default and the count optional (0 and 1).
// Offsets are left 0. Errors: Error that names the place in the text and what was expected there.
[[nodiscard]] std::vector<GlobalStruct> compile_globals(std::string_view text);

class ScriptGlobals {
  public:
    explicit ScriptGlobals(Fence fence);

    // Adds declarations; every element gets its defaults. The data area moves. Errors: Error for text that
    // does not compile or a name that exists.
    void declare(std::string_view text);
    [[nodiscard]] const std::vector<GlobalStruct>& structs() const { return structs_; }

    // A field of an element; the reference lasts until the data area moves. Errors: Error for an unknown name
    // or an index out of range, saying what there is.
    [[nodiscard]] std::int32_t& at(std::string_view name, std::int32_t index, std::string_view field);
    // Byte offset of "name" or "name.field", of element 0; nothing for an unknown name.
    [[nodiscard]] std::optional<std::int32_t> offset_of(std::string_view path) const;

    // Forgets all declarations.
    void clear();
    // Moves the data area to another address; the old one is overwritten and given back.
    void move();
    [[nodiscard]] std::uint8_t* data();

    void check(std::vector<std::string>& violations) const;

  private:
    [[nodiscard]] const GlobalStruct* find(std::string_view name) const;
    void resize(std::size_t bytes);

    Fence fence_;
    std::vector<GlobalStruct> structs_;
    Memory memory_;
};

}  // namespace host
