// Processes: their local data, and the lists by coordinate type.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "host/patterned.h"

namespace host {

inline constexpr std::int32_t screen_coordinates = 0;  // drawn by the host itself
inline constexpr std::int32_t scroll_coordinates = 1;  // c_scroll: drawn by the scrolls

// Whether a process is to be drawn, as far as its own words say: status 2, or 4 and above, and word 33
// greater than 0.
[[nodiscard]] bool is_shown(const ProcessLocals& process);

// The id of a process is the address of its ProcessLocals, so the id of a dead process may come up again.
class Processes {
  public:
    // A live process at the end of its type's list: status 2, word33 1, sizes 100, everything else 0.
    ProcessLocals& create(std::int32_t coordinate_type);
    // Ends a process. The node after it in its list, or null. Errors: Error for an id that is not alive.
    ProcessNode* destroy(std::int32_t id);

    [[nodiscard]] static std::int32_t id_of(const ProcessLocals& locals);
    [[nodiscard]] bool exists(std::int32_t id) const { return processes_.contains(id); }
    [[nodiscard]] ProcessLocals* find(std::int32_t id);  // null: not alive
    [[nodiscard]] std::size_t count() const { return processes_.size(); }
    [[nodiscard]] std::vector<std::int32_t> ids() const;             // in order of creation
    [[nodiscard]] ProcessNode* first(std::int32_t coordinate_type);  // null: none

    // Errors of these: Error for an id that is not alive.
    [[nodiscard]] std::int32_t type_of(std::int32_t id) const;
    void set_type(std::int32_t id, std::int32_t coordinate_type);  // to the end of the new type's list
    // Copies a graph table (element 0 the count, then the codes) and points the process at the copy; empty:
    // none.
    void set_graph_table(std::int32_t id, std::span<const std::int32_t> table);

    // Called with the id of each process that ends, whoever ends it, while it is still alive. It may end
    // others. It must not throw: the module may be on the stack.
    std::function<void(std::int32_t id)> on_delete;

    void check(std::vector<std::string>& violations) const;

  private:
    struct Process {
        Patterned<ProcessNode> node;
        Patterned<ProcessLocals> locals;
        std::int32_t type = 0;
        std::uint64_t serial = 0;
        std::vector<std::int32_t> graph_table;
    };
    using List = std::vector<Process*>;  // in the order of the chain of nodes
    [[nodiscard]] Process& at(std::int32_t id) const;
    void append(Process& process, std::int32_t type);
    ProcessNode* unlink(Process& process);

    std::map<std::int32_t, std::unique_ptr<Process>> processes_;
    std::map<std::int32_t, List> lists_;
    std::uint64_t next_serial_ = 0;
};

}  // namespace host
