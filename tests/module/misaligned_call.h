// Calls as a host makes them that keeps its stack on 4 bytes only.
#pragma once

#include <cstdint>
#include <type_traits>

namespace tests {

// Calls a C function with the stack `shift` bytes (0 to 12, in words) off the 16-byte boundary at which
// callers following the platform's rules keep it.
template <class Result, class... Parameters, class... Arguments>
Result call_misaligned(std::uint32_t shift, Result (*function)(Parameters...), Arguments... given) {
    static_assert(sizeof...(Parameters) == sizeof...(Arguments) && sizeof...(Arguments) <= 7);
    [[maybe_unused]] const auto word = [](auto value) {
        if constexpr (std::is_pointer_v<decltype(value)>)
            return reinterpret_cast<std::uint32_t>(value);
        else
            return static_cast<std::uint32_t>(value);
    };
    const std::uint32_t words[8] = {word(given)...};
    const auto address = reinterpret_cast<std::uint32_t>(function);
    std::uint32_t result;
    // Eight argument words are copied to the new top of the stack: the callee reads as many as it has.
    asm volatile(
        "mov %%esp, %%edi\n\t"
        "and $-16, %%esp\n\t"
        "sub $128, %%esp\n\t"
        "sub %[shift], %%esp\n\t"
        "pushl 28(%[words])\n\t"
        "pushl 24(%[words])\n\t"
        "pushl 20(%[words])\n\t"
        "pushl 16(%[words])\n\t"
        "pushl 12(%[words])\n\t"
        "pushl 8(%[words])\n\t"
        "pushl 4(%[words])\n\t"
        "pushl (%[words])\n\t"
        "call *%%eax\n\t"
        "mov %%edi, %%esp\n\t"
        : "=a"(result), [shift] "+d"(shift)
        : "a"(address), [words] "S"(words)
        : "ecx", "edi", "memory", "cc", "xmm0", "xmm1", "xmm2", "xmm3", "xmm4", "xmm5", "xmm6", "xmm7");
    if constexpr (!std::is_void_v<Result>) return static_cast<Result>(result);
}

// Slots of a host record that were entered with the stack off the 16-byte boundary: a host, and the C
// library, may be built to expect it even where the interpreter that calls the module does not keep it.
inline int misaligned_slots;

template <auto Slot>
struct Probed;
template <class Record, class Result, class... Arguments, Result (*Record::*Slot)(Arguments...)>
struct Probed<Slot> {
    static void put_before(Record& record) {
        original = record.*Slot;
        record.*Slot = call;
    }
    // The frame begins below the return address and the saved frame pointer: the test is built with frames.
    static Result call(Arguments... arguments) {
        misaligned_slots +=
            (reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0)) + 8) % 16 == 0 ? 0 : 1;
        return original(arguments...);
    }
    static inline Result (*original)(Arguments...);
};

template <auto... Slots, class Record>
void probe(Record& record) {
    (Probed<Slots>::put_before(record), ...);
}

}  // namespace tests
