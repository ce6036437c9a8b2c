// The module's memory: counts what it holds and makes allocations fail. A byte read or written behind a
// block, or in one that was given back, is a crash.
//
// Works on the loaded module's table of addresses, so it sees exactly the module's own calls, with and
// without sanitizers. Attach after each load; a module is not to be called once its allocator is gone, so the
// allocator outlives it.
#pragma once

#include <cstddef>
#include <map>
#include <vector>

#include "host/memory.h"

namespace tests {

class ModuleAllocator {
  public:
    ModuleAllocator();
    ModuleAllocator(const ModuleAllocator&) = delete;
    ModuleAllocator& operator=(const ModuleAllocator&) = delete;
    ~ModuleAllocator();

    // Puts itself between the loaded module at `path` and malloc and free. Asserts that it found both.
    void attach(const char* path);

    // From now on the n-th allocation (1 is the next) fails; with `for_good` all after it too. 0: none.
    void fail(int nth, bool for_good);
    void heal() { fail(0, false); }

    int made = 0;             // allocations asked for since the last fail() or heal(), failed ones included
    int bad_frees = 0;        // of addresses that the module did not hold
    std::size_t largest = 0;  // bytes asked for at once, so far
    std::map<const void*, host::Memory> live;  // blocks that the module holds, by address
    std::vector<std::size_t> freed;            // bytes of the blocks that it gave back, in that order

  private:
    static void* allocate(std::size_t bytes);
    static void release(void* block);

    int fail_at_ = 0;
    bool for_good_ = false;
    static ModuleAllocator* attached_;
};

}  // namespace tests
