#include "host/blit_lists.h"

#include <algorithm>
#include <utility>

namespace host {

BlitQueue::BlitQueue(std::string name) : name_(std::move(name)) {
    record_.get().zorder = nullptr;
}

__RVKBlit2D__* BlitQueue::add() {
    if (pool_.size() == order_.size()) pool_.push_back(std::make_unique<Patterned<__RVKBlit2D__>>());
    // The first count() entries of the pool are the ones in use, whatever order they are drawn in.
    auto& entry = *pool_[order_.size()];
    entry.fill();
    entry.get().drawn = 0;
    entry.get().draw = nullptr;
    order_.push_back(&entry.get());
    record_.get().zorder = order_.data();
    return &entry.get();
}

void BlitQueue::sort() {
    std::stable_sort(order_.begin(), order_.end(),
                     [](const __RVKBlit2D__* a, const __RVKBlit2D__* b) { return a->z > b->z; });
}

void BlitQueue::clear() {
    order_.clear();
}

BlitList* BlitQueue::record() {
    return &record_.get();
}

void BlitQueue::check(std::vector<std::string>& violations) const {
    const std::string where = name_.empty() ? "of the main list" : "of list " + name_;
    record_.check(where, violations);
    for (std::size_t i = 0; i < pool_.size(); ++i)
        pool_[i]->check(std::to_string(i) + " " + where, violations);
}

BlitLists::BlitLists() {
    reset();
}

void BlitLists::reset() {
    queues_.clear();
    queues_.push_back(std::make_unique<BlitQueue>(""));
    current_ = queues_.front().get();
}

BlitQueue* BlitLists::find(std::string_view name) {
    const auto found = std::find_if(queues_.begin(), queues_.end(),
                                    [&](const auto& queue) { return queue->name() == name; });
    return found == queues_.end() ? nullptr : found->get();
}

BlitQueue& BlitLists::create(std::string name) {
    queues_.push_back(std::make_unique<BlitQueue>(std::move(name)));
    return *queues_.back();
}

bool BlitLists::select(const void* handle) {
    const void* wanted = handle == nullptr ? queues_.front().get() : handle;
    const auto found = std::find_if(queues_.begin(), queues_.end(),
                                    [&](const auto& queue) { return queue.get() == wanted; });
    if (found == queues_.end()) return false;
    current_ = found->get();
    return true;
}

void BlitLists::check(std::vector<std::string>& violations) const {
    for (const auto& queue : queues_) queue->check(violations);
}

}  // namespace host
