// Blit lists: the main list and the lists that modules create, one of them current.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/patterned.h"

namespace host {

// One list. Entries keep their address until the list is destroyed; clear() makes them free for use again.
class BlitQueue {
  public:
    explicit BlitQueue(std::string name);

    [[nodiscard]] const std::string& name() const { return name_; }
    [[nodiscard]] std::int32_t count() const { return static_cast<std::int32_t>(order_.size()); }
    // The entries in the order of creation, or in drawing order once sorted.
    [[nodiscard]] const std::vector<__RVKBlit2D__*>& entries() const { return order_; }

    // A new entry: the pattern in every word, named or not, but for `drawn` 0 and `draw` null. So a test sees
    // which words a module wrote.
    __RVKBlit2D__* add();
    // Larger z lies deeper and is drawn first; entries of equal z keep their order.
    void sort();
    void clear();
    [[nodiscard]] BlitList* record();

    void check(std::vector<std::string>& violations) const;

  private:
    std::string name_;
    Patterned<BlitList> record_;
    std::vector<std::unique_ptr<Patterned<__RVKBlit2D__>>> pool_;
    std::vector<__RVKBlit2D__*> order_;
};

class BlitLists {
  public:
    BlitLists();

    [[nodiscard]] BlitQueue& main() { return *queues_.front(); }
    [[nodiscard]] BlitQueue& current() { return *current_; }
    [[nodiscard]] BlitQueue* find(std::string_view name);  // null: none; the main list is named ""
    // A further list, empty, not selected.
    BlitQueue& create(std::string name);
    // Back to a main list alone, empty and current.
    void reset();
    // Makes a list current; null is the main list. False, and nothing changes, for a list that is not one of
    // ours.
    bool select(const void* handle);

    void check(std::vector<std::string>& violations) const;

  private:
    std::vector<std::unique_ptr<BlitQueue>> queues_;
    BlitQueue* current_;
};

}  // namespace host
