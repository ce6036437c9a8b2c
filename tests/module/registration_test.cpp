// What the module declares to a host, and what it does in its init hook.
#define DOCTEST_CONFIG_IMPLEMENT_WITH_MAIN
#include <doctest/doctest.h>

#include <cstring>
#include <string>
#include <vector>

#include "tests/module/module_fixture.h"

namespace {

using namespace tests;

constexpr const char* kDeclaration =
    "struct scroll[10] int camera  = 0;int ratio   = 200;int file    = 0;int graph1  = 0;int graph2  = 0;"
    "int region1 = -1;int region2 = -1;int speed   = 0;int x0      = 0;int y0      = 0;int x1      = 0;"
    "int y1      = 0;int z       = 512;int alpha   = 255;int visible = 1;end ";

// A registrar that writes everything down and then overwrites the tables it was given: they are copies.
struct Registered {
    std::string order;
    std::vector<std::pair<std::string, std::int32_t>> constants;
    std::string globals;
    std::vector<FunctionRow> functions;
    std::vector<std::string> signatures;
    std::vector<HookRow> hooks;
    bool closed = true;  // every table ended with a row of zeros alone
};
Registered* registered;

template <class Row>
void overwrite(const Row* table, std::size_t rows) {
    std::memset(const_cast<Row*>(table), 0, rows * sizeof(Row));
}

void take_constants(const ConstantRow* table) {
    registered->order += "constants ";
    std::size_t n = 0;
    for (; table[n].name != nullptr; ++n) registered->constants.emplace_back(table[n].name, table[n].value);
    registered->closed &= table[n].value == 0;
    overwrite(table, n);
}
void take_globals(const char* text) {
    registered->order += "globals ";
    registered->globals = text;
}
void take_functions(const FunctionRow* table) {
    registered->order += "functions ";
    std::size_t n = 0;
    for (; table[n].signature != nullptr; ++n) {
        registered->functions.push_back(table[n]);
        registered->signatures.emplace_back(table[n].signature);
        registered->closed &= table[n].zero == 0 && std::string(table[n].return_type) == "I";
    }
    const FunctionRow& last = table[n];
    registered->closed &= last.return_type == nullptr && last.zero == 0 && last.handler == nullptr;
    overwrite(table, n);
}
void take_hooks(const HookRow* table) {
    registered->order += "hooks ";
    std::size_t n = 0;
    for (; table[n].function != nullptr; ++n) registered->hooks.push_back(table[n]);
    registered->closed &= table[n].id == 0;
    overwrite(table, n);
}
HostRuntime* no_runtime() {
    registered->order += "runtime";
    return nullptr;
}

Registered register_again(host::Engine& engine) {
    Registered result;
    registered = &result;
    ExportRegistrar registrar{};
    registrar.RegisterConstants = take_constants;
    registrar.RegisterGlobals = take_globals;
    registrar.RegisterFunctions = take_functions;
    registrar.RegisterHooks = take_hooks;
    registrar.GetRuntime = no_runtime;
    const auto exports = reinterpret_cast<std::int32_t (*)(const ExportRegistrar*)>(
        engine.symbol("RVK_mod_scroll2D_MainLibraryExports"));
    auto& runtime = *static_cast<HostRuntime**>(engine.symbol("rvkre"));
    runtime = nullptr;
    CHECK(exports(&registrar) == 1);
    CHECK(runtime == nullptr);
    runtime = &engine.runtime();
    return result;
}

TEST_CASE("the module declares its constants, globals, functions and hooks in this order and form") {
    Fixture f;
    const auto* needed =
        static_cast<const char* const*>(f.engine.symbol("RVK_mod_scroll2D_MainLibraryDependencies"));
    CHECK(std::string(needed[0]) == "RVK_mod_graphics2D");
    CHECK(needed[1] == nullptr);

    for (int turn = 0; turn < 2; ++turn) {
        const Registered r = register_again(f.engine);
        CHECK(r.order == "constants globals functions hooks runtime");
        CHECK(r.closed);
        CHECK(r.constants == std::vector<std::pair<std::string, std::int32_t>>{{"c_scroll", 1},
                                                                               {"all_scroll", -1},
                                                                               {"scroll_normal", 0},
                                                                               {"scroll_layers", 1},
                                                                               {"scroll_normal_key", 2},
                                                                               {"scroll_layers_key", 3}});
        CHECK(r.globals == kDeclaration);
        CHECK(r.signatures ==
              std::vector<std::string>{"move_scroll(I)", "refresh_scroll(I)", "start_scroll(I,I,I,I,I,I)",
                                       "start_scroll(I,I,I,I,I,I,I)", "stop_scroll(I)", "scroll_move(I)",
                                       "scroll_refresh(I)", "scroll_set_destination(I,I,I,I)",
                                       "scroll_start(I,I,I,I,I,I)", "scroll_start(I,I,I,I,I,I,I)",
                                       "scroll_stop(I)"});
        const char* const handlers[] = {"move",    "refresh",         "start", "start", "stop", "move",
                                        "refresh", "set_destination", "start", "start", "stop"};
        REQUIRE(r.functions.size() == std::size(handlers));
        for (std::size_t i = 0; i < std::size(handlers); ++i)
            CHECK(reinterpret_cast<void*>(r.functions[i].handler) ==
                  f.engine.symbol(std::string("RVK_scroll_") + handlers[i]));
        const char* const hooks[] = {"init", "frame", "update", "release"};
        REQUIRE(r.hooks.size() == std::size(hooks));
        for (std::size_t i = 0; i < std::size(hooks); ++i) {
            CHECK(r.hooks[i].id == static_cast<std::int32_t>(i) + 1);
            CHECK(reinterpret_cast<void*>(r.hooks[i].function) ==
                  f.engine.symbol(std::string("RVK_mod_scroll2D_") + hooks[i]));
        }
    }
}

TEST_CASE("init asks for its list and its globals once and leaves ten idle scrolls") {
    std::string calls;
    host::Engine engine({.width = kWidth, .height = kHeight, .bits_per_pixel = 8});
    engine.globals().declare("struct other[3] int a; end");  // scroll[10] lies behind it
    Replaced<&Graphics2DInterface::CreateBlitList> create(
        engine.graphics(), [&](const char* name, std::int32_t size, std::int32_t growth) {
            calls += std::string(name) + " " + std::to_string(size) + " " + std::to_string(growth) + ";";
            return create.original(name, size, growth);
        });
    Replaced<&HostRuntime::GlobalOffset> offset(engine.runtime(), [&](std::int32_t zero, const char* name) {
        calls += std::string(name) + " " + std::to_string(zero) + ";";
        return offset.original(zero, name);
    });
    engine.load(SCROLL2D_MODULE);
    CHECK(calls == "SCROLL2D 256 256;scroll.camera 0;");
    CHECK(*static_cast<HostRuntime**>(engine.symbol("rvkre")) == &engine.runtime());

    const ScrollSystemInterface& services = *engine.services();
    for (std::int32_t i = 0; i < 10; ++i) {
        __RVKPoint2D__ at{5, 6};
        CHECK(services.GetScrollPoint(i, 0, &at) == 0);
        CHECK(services.GetProcessInScroll(i, 0) == 0);
        CHECK((at.x == 5 && at.y == 6));
    }
    engine.run_hook(host::Hook::frame);
    CHECK(engine.blit_lists().main().count() == 0);

    // The offset counts: element 9 is found behind the other globals, wherever these move.
    engine.files().create_map(kFile, 1, 100, 100);
    CHECK(engine.call("scroll_start", {9, kFile, 1, 0, -1, 0}).value == 9);
    CHECK(engine.global("scroll", 9, "file") == kFile);
    engine.move_globals();
    engine.global("scroll", 9, "x0") = 7;
    CHECK(engine.call("scroll_move", {9}).value == 1);
    engine.global("scroll", 9, "x0") = -20;
    CHECK(engine.call("scroll_move", {9}).value == 1);
    CHECK(engine.global("scroll", 9, "x0") == 0);
    for (const std::int32_t i : {0, 1, 2}) CHECK(engine.global("other", i, "a") == 0);
    CHECK(engine.faults().empty());
}

}  // namespace
