// What the module declares to a host, and what it does in its init hook.
#include <doctest/doctest.h>

#include <cstring>
#include <string>

#include "tests/module/module_fixture.h"

namespace {

using namespace tests;

constexpr const char* kDeclarations =
    "c_scroll 1; all_scroll -1; scroll_normal 0; scroll_layers 1; scroll_normal_key 2; scroll_layers_key 3; "
    "0; "
    "struct scroll[10] int camera  = 0;int ratio   = 200;int file    = 0;int graph1  = 0;int graph2  = 0;"
    "int region1 = -1;int region2 = -1;int speed   = 0;int x0      = 0;int y0      = 0;int x1      = 0;"
    "int y1      = 0;int z       = 512;int alpha   = 255;int visible = 1;end ; "
    "move_scroll(I) I 0 RVK_scroll_move; refresh_scroll(I) I 0 RVK_scroll_refresh; "
    "start_scroll(I,I,I,I,I,I) I 0 RVK_scroll_start; start_scroll(I,I,I,I,I,I,I) I 0 RVK_scroll_start; "
    "stop_scroll(I) I 0 RVK_scroll_stop; scroll_move(I) I 0 RVK_scroll_move; "
    "scroll_refresh(I) I 0 RVK_scroll_refresh; scroll_set_destination(I,I,I,I) I 0 "
    "RVK_scroll_set_destination; "
    "scroll_start(I,I,I,I,I,I) I 0 RVK_scroll_start; scroll_start(I,I,I,I,I,I,I) I 0 RVK_scroll_start; "
    "scroll_stop(I) I 0 RVK_scroll_stop; 0; "
    "1 RVK_mod_scroll2D_init; 2 RVK_mod_scroll2D_frame; 3 RVK_mod_scroll2D_update; 4 "
    "RVK_mod_scroll2D_release; "
    "0; runtime; ";

constexpr const char* kRoutines[] = {
    "RVK_mod_scroll2D_init",    "RVK_mod_scroll2D_frame", "RVK_mod_scroll2D_update",
    "RVK_mod_scroll2D_release", "RVK_scroll_start",       "RVK_scroll_stop",
    "RVK_scroll_move",          "RVK_scroll_refresh",     "RVK_scroll_set_destination"};

// Registers a loaded module once more, with a registrar that writes everything down and then overwrites the
// tables that it was given: they are copies.
std::string declarations_of(const host::Engine& engine) {
    std::string told;
    ExportRegistrar registrar{};
    const auto number = [](std::int32_t value) { return std::to_string(value); };
    const auto name_of = [&](auto code) -> std::string {
        for (const char* name : kRoutines)
            if (engine.symbol(name) == reinterpret_cast<void*>(code)) return std::string(" ") + name;
        return "";
    };
    // Tells each row up to the one whose name or function is null, and that too.
    const auto take = [&](const auto* table, auto key, auto text) {
        const auto* row = table;
        do told += text(*row) + "; ";
        while (((row++)->*key) != nullptr);
        std::memset(const_cast<void*>(static_cast<const void*>(table)), 0xEE,
                    static_cast<std::size_t>(row - table) * sizeof *row);
    };
    const auto word = [](const char* text) { return text != nullptr ? std::string(text) + " " : ""; };
    Replaced<&ExportRegistrar::RegisterConstants> constants(registrar, [&](const ConstantRow* table) {
        take(table, &ConstantRow::name, [&](const ConstantRow& r) { return word(r.name) + number(r.value); });
    });
    Replaced<&ExportRegistrar::RegisterGlobals> globals(
        registrar, [&](const char* text) { told += std::string(text) + "; "; });
    Replaced<&ExportRegistrar::RegisterFunctions> functions(registrar, [&](const FunctionRow* table) {
        take(table, &FunctionRow::signature, [&](const FunctionRow& r) {
            return word(r.signature) + word(r.return_type) + number(r.zero) + name_of(r.handler);
        });
    });
    Replaced<&ExportRegistrar::RegisterHooks> hooks(registrar, [&](const HookRow* table) {
        take(table, &HookRow::function, [&](const HookRow& r) { return number(r.id) + name_of(r.function); });
    });
    Replaced<&ExportRegistrar::GetRuntime> runtime(
        registrar, [&] { return told += "runtime; ", &host::Engine::live()->runtime(); });
    const auto exports = reinterpret_cast<std::int32_t (*)(const ExportRegistrar*)>(
        engine.symbol("RVK_mod_scroll2D_MainLibraryExports"));
    CHECK(exports(&registrar) == 1);
    return told;
}

TEST_CASE_FIXTURE(Fixture,
                  "the module declares its constants, globals, functions and hooks in this order and form") {
    const auto* needed =
        static_cast<const char* const*>(engine.symbol("RVK_mod_scroll2D_MainLibraryDependencies"));
    CHECK(std::string(needed[0]) == "RVK_mod_graphics2D");
    CHECK(needed[1] == nullptr);
    for (int turn = 0; turn < 2; ++turn) CHECK(declarations_of(engine) == kDeclarations);
}

TEST_CASE("init asks for its list and its globals once, and finds these wherever they are") {
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
    for (std::int32_t i = 0; i < 10; ++i) CHECK(engine.services()->GetProcessInScroll(i, 0) == 0);

    engine.files().create_map(kFile, 1, 100, 100);
    CHECK(engine.call("scroll_start", {9, kFile, 1, 0, -1, 0}).value == 9);
    CHECK(engine.global("scroll", 9, "file") == kFile);
    engine.move_globals();
    for (const std::int32_t to : {7, -20}) {
        engine.global("scroll", 9, "x0") = to;
        CHECK(engine.call("scroll_move", {9}).value == 1);
    }
    CHECK(engine.global("scroll", 9, "x0") == 0);
    for (const std::int32_t i : {0, 1, 2}) CHECK(engine.global("other", i, "a") == 0);
    CHECK(engine.faults().empty());
}

}  // namespace
