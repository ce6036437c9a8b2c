// The libFuzzer entry: any bytes are a game, and a difference from the model is a crash.
#define DOCTEST_CONFIG_IMPLEMENT
#include <dlfcn.h>
#include <doctest/doctest.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <exception>

#include "tests/model/random_game.h"

// The fuzzer counts the module's paths from its first loading on, so the module must never be unloaded.
extern "C" int LLVMFuzzerInitialize(int*, char***) {
    static doctest::Context assertions;
    assertions.setAsDefaultForAssertsOutOfTestCases();
    assertions.setAssertHandler([](const doctest::AssertData& failed) {
        if (!failed.m_failed) return;
        std::fprintf(stderr, "%s:%d: %s\n", failed.m_file, failed.m_line, failed.m_expr);
        std::abort();
    });
    if (dlopen(model::module_path(SCROLL2D_MODULE).c_str(), RTLD_NOW | RTLD_LOCAL) != nullptr) return 0;
    std::fprintf(stderr, "%s\n", dlerror());
    std::abort();
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    try {
        model::play_game({bytes, size}, model::module_path(SCROLL2D_MODULE));
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "%s\n", failure.what());
        std::abort();
    }
    return 0;
}
