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

// Makes slots of a host record fit to be called from any stack, as those of a host are that keeps its own on
// 4 bytes; the host of these tests is built to expect 16, and the module hands on what it was given.
template <auto Slot>
struct Realigned;
template <class Record, class Result, class... Arguments, Result (*Record::*Slot)(Arguments...)>
struct Realigned<Slot> {
    static void put_before(Record& record) {
        original = record.*Slot;
        record.*Slot = call;
    }
    [[gnu::force_align_arg_pointer]] static Result call(Arguments... arguments) {
        // The compiler realigns only frames that hold something aligned.
        [[maybe_unused]] alignas(16) volatile char anchor[16] = {};
        return original(arguments...);
    }
    static inline Result (*original)(Arguments...);
};

template <auto... Slots, class Record>
void realign(Record& record) {
    (Realigned<Slots>::put_before(record), ...);
}

}  // namespace tests
