#include "host/processes.h"

#include <algorithm>
#include <cstring>

#include "host/error.h"

namespace host {

bool is_shown(const ProcessLocals& process) {
    return (process.status == 2 || process.status >= 4) && process.word33 > 0;
}

std::int32_t Processes::id_of(const ProcessLocals& locals) {
    return static_cast<std::int32_t>(reinterpret_cast<std::uintptr_t>(&locals));
}

ProcessLocals& Processes::create(std::int32_t coordinate_type) {
    auto process = std::make_unique<Process>();
    process->serial = next_serial_++;
    process->node.get().data = &process->locals.get();
    ProcessLocals& p = process->locals.get();
    p.status = 2;
    p.scroll_mark = p.scroll_mask = 0;
    p.file = p.graph = 0;
    p.graph_table = nullptr;
    p.x = p.y = p.z = 0;
    p.word33 = 1;
    p.region = p.resolution = 0;
    p.word38 = p.angle = 0;
    p.size = p.size_x = p.size_y = 100;
    p.word43 = p.word44 = p.flags = 0;
    p.word46 = p.word47 = p.word48 = p.word49 = 0;
    append(*process, coordinate_type);
    processes_.emplace(id_of(p), std::move(process));
    return p;
}

ProcessNode* Processes::destroy(std::int32_t id) {
    static_cast<void>(at(id));
    if (on_delete) on_delete(id);
    const auto found = processes_.find(id);
    if (found == processes_.end()) return nullptr;  // the callback ended it
    ProcessNode* next = unlink(*found->second);
    processes_.erase(found);
    return next;
}

Processes::Process& Processes::at(std::int32_t id) const {
    const auto found = processes_.find(id);
    if (found == processes_.end()) throw Error("no live process has the id " + std::to_string(id));
    return *found->second;
}

ProcessLocals* Processes::find(std::int32_t id) {
    const auto found = processes_.find(id);
    return found == processes_.end() ? nullptr : &found->second->locals.get();
}

std::vector<std::int32_t> Processes::ids() const {
    std::vector<std::pair<std::uint64_t, std::int32_t>> order;
    for (const auto& [id, process] : processes_) order.emplace_back(process->serial, id);
    std::sort(order.begin(), order.end());
    std::vector<std::int32_t> result;
    result.reserve(order.size());
    for (const auto& [serial, id] : order) result.push_back(id);
    return result;
}

ProcessNode* Processes::first(std::int32_t coordinate_type) {
    const auto list = lists_.find(coordinate_type);
    return list == lists_.end() || list->second.empty() ? nullptr : &list->second.front()->node.get();
}

std::int32_t Processes::type_of(std::int32_t id) const {
    return at(id).type;
}

void Processes::set_type(std::int32_t id, std::int32_t coordinate_type) {
    Process& process = at(id);
    if (process.type == coordinate_type) return;
    unlink(process);
    append(process, coordinate_type);
}

void Processes::set_graph_table(std::int32_t id, std::span<const std::int32_t> table) {
    Process& process = at(id);
    process.graph_table.assign(table.begin(), table.end());
    process.locals.get().graph_table = table.empty() ? nullptr : process.graph_table.data();
}

void Processes::append(Process& process, std::int32_t type) {
    List& list = lists_[type];
    if (!list.empty()) list.back()->node.get().next = &process.node.get();
    list.push_back(&process);
    process.node.get().next = nullptr;
    process.type = type;
}

ProcessNode* Processes::unlink(Process& process) {
    List& list = lists_.at(process.type);
    const auto place = std::find(list.begin(), list.end(), &process);
    ProcessNode* next = process.node.get().next;
    if (place != list.begin()) (*std::prev(place))->node.get().next = next;
    list.erase(place);
    return next;
}

void Processes::check(std::vector<std::string>& violations) const {
    for (const auto& [id, process] : processes_) {
        const std::string which = "of process " + std::to_string(process->serial);
        process->node.check(which, violations);
        process->locals.check(which, violations);
    }
}

}  // namespace host
