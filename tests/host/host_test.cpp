// The host as a world: loading, calls, globals, files, regions, and its watch over the contract. Lists of
// processes and of blit entries are what the module's random games lean on.
#include <doctest/doctest.h>

#include <filesystem>
#include <fstream>
#include <string_view>
#include <utility>

#include "host/engine.h"
#include "module/contract/host_check.h"
#include "tests/system.h"

#define CHECK_ERROR(expression, part) \
    CHECK_THROWS_WITH_AS(static_cast<void>(expression), doctest::Contains(part), host::Error)

namespace {

HostRuntime& runtime() {
    return host::Engine::live()->runtime();
}

// Takes this many arguments, and gives them back as the digits of a number.
template <int arguments>
std::int32_t digits() {
    std::int32_t total = 0;
    for (std::int32_t i = 0, weight = 1; i < arguments; ++i, weight *= 10)
        total += weight * runtime().PopInt();
    return runtime().ReturnInt(total);
}
std::int32_t fail() {
    runtime().RaiseError(107, "FAIL", 0, 1, runtime().PopInt());
    return runtime().ReturnInt(host::failure);
}

}  // namespace

TEST_CASE("A module is registered as it declares itself, each load afresh, and is told when it goes") {
    std::int32_t released = 0;
    for (int round = 1; round <= 3; ++round) {
        host::Engine engine;
        engine.load(STANDIN);
        CHECK(engine.constant("minus_one") == -1);
        CHECK_ERROR(engine.constant("eight"), "no constant 'eight'");
        CHECK(engine.call("count_calls", {}).value == 1);
        CHECK(engine.services() != nullptr);
        *static_cast<std::int32_t**>(engine.symbol("standin_release_counter")) = &released;
        CHECK_ERROR(engine.load(STANDIN), "loaded already");
        CHECK_ERROR(host::Engine{}, "an engine lives already");
        if (round == 2) {
            engine.unload();
            CHECK(released == 2);
            CHECK(engine.services() == nullptr);
            CHECK_ERROR(engine.call("count_calls", {}), "there are: none");
            engine.load(STANDIN);
            CHECK(engine.call("count_calls", {}).value == 1);
        }
        CHECK(engine.faults().empty());
        CHECK(engine.untouched().empty());
    }
    CHECK(released == 3);
}

TEST_CASE("A module that cannot be loaded is refused with the reason, and the engine takes the next one") {
    host::Engine engine;
    CHECK_ERROR(engine.load("no/such/module.so"), "no module file no/such/module.so");
    CHECK_ERROR(engine.load("/proc/self/exe"), "cannot load");
    CHECK_ERROR(engine.load(STANDIN_EMPTY), "does not export RVK_mod_scroll2D_MainLibraryDependencies");
    const std::string_view strangers[][2] = {
        {{"\177ELF\1\1\1\0\0\0\0\0\0\0\0\0\3\0\267\0", 20}, "it is made for 64-bit ARM under Linux"},
        {{"\0asm\1\0\0\0", 8}, "it is made for WebAssembly"},
        {{"MZ", 2}, "cannot load stranger"}};
    for (const auto& [bytes, reason] : strangers) {
        std::ofstream("stranger", std::ios::binary) << bytes;
        CHECK_ERROR(engine.load("stranger"), std::string(reason).c_str());
    }
    std::filesystem::remove("stranger");
    const char* flaws[][2] = {{"needs more", "needs RVK_mod_sound"},
                              {"bad globals", "expected a number of 32 bits at character 21"},
                              {"bad signature", "\"odd(I,S)\" is not of the form"},
                              {"bad hook", "no hook 5"},
                              {"unknown global", "'probe.x', which is not declared"},
                              {"early call", "NewBlit was called during registration"},
                              {"twice", "twice or out of order"},
                              {"refuses", "returned 0, not 1"}};
    for (const auto& [flaw, reason] : flaws) {
        tests::set_environment("STANDIN_FLAW", flaw);
        CHECK_ERROR(engine.load(STANDIN), reason);
    }
    tests::set_environment("STANDIN_FLAW", "");
    CHECK_FALSE(engine.loaded());
    engine.load(STANDIN);
    CHECK(engine.constants().size() == 2);
}

TEST_CASE("Every slot that is null is named before a module can call it") {
    host::Engine engine;
    std::size_t slots = 0;
    const auto try_without = [&]<class Record>(Record& record, std::size_t first, std::size_t last) {
        const host::NamedBits& names = host::named_bits<Record>();
        auto* words = reinterpret_cast<void**>(&record);
        for (std::size_t word = first; word <= last; ++word) {
            if (names.bits[word] == 0) continue;
            void* const filled = std::exchange(words[word], nullptr);
            CHECK_ERROR(engine.load(STANDIN), names.record);
            words[word] = filled;
            ++slots;
        }
    };
    try_without(engine.registrar(), 0, 9);
    try_without(engine.runtime(), 1, 80);  // registration fills word 0
    try_without(engine.process_services(), 0, 7);
    try_without(engine.frame_state(), 0, 7);
    try_without(engine.graphics(), 0, 45);  // the module fills word 85
    CHECK(slots == 5 + 9 + 2 + 1 + 22);
    CHECK(rvk_missing_registrar_slot(nullptr) == std::string("ExportRegistrar"));
    CHECK(rvk_missing_slot(nullptr, 0) == std::string("HostRuntime"));
}

TEST_CASE("A call is bound by name and number of arguments and watched until it returns") {
    host::Engine engine;
    const char* faults[] = {
        "PopInt was called more often",           "left 1 arguments", "did not call ReturnInt",
        "did not return what ReturnInt returned", "not alive",        "not a list"};
    const FunctionRow rows[] = {
        {"breach0()", "I", 0, digits<1>},
        {"breach1(I)", "I", 0, digits<0>},
        {"breach2()", "I", 0, [] { return 0; }},
        {"breach3()", "I", 0, [] { return runtime().ReturnInt(7), 7; }},
        {"breach4()", "I", 0, [] { return runtime().DeleteProcess(nullptr, 2), digits<0>(); }},
        {"breach5()", "I", 0, [] { return runtime().Graphics->SelectBlitList(&runtime()), digits<0>(); }},
        {"fail(I)", "I", 0, fail},
        {"sum(I,I)", "I", 0, digits<2>},
        {"sum(I,I,I)", "I", 0, digits<3>},
        {nullptr, nullptr, 0, nullptr}};
    engine.registrar().RegisterFunctions(rows);
    CHECK(engine.faults() == std::vector<std::string>{"a registrar slot was called outside registration"});
    for (std::size_t i = 0; i < std::size(faults); ++i) {
        CAPTURE(faults[i]);
        engine.clear_faults();
        const std::vector<std::int32_t> arguments(i == 1 ? 1 : 0);
        engine.call(engine.functions()[i].name, arguments);
        REQUIRE(engine.faults().size() == 1);
        CHECK(engine.faults()[0].find(faults[i]) != std::string::npos);
    }
    engine.clear_faults();
    CHECK(engine.call("sum", {1, 2}).value == 12);
    CHECK(engine.call("sum", {1, 2, 3}).value == 123);
    CHECK_ERROR(engine.call("sum", {1}), "sum takes 2 or 3 arguments, not 1");
    CHECK_ERROR(engine.call("summ", {1}), "there is no function 'summ'; there are: breach0, breach1");
    const host::CallResult failed = engine.call("fail", {12});
    CHECK(failed.failed());
    CHECK(failed.errors == std::vector{host::ScriptError{107, "FAIL", 0, 1, 12}});
    CHECK(failed.errors[0].text() == "FAIL: scroll number out of range (error 107, argument 1, value 12)");
    CHECK(engine.call("sum", {4, 4}).errors.empty());
    CHECK(engine.errors() == failed.errors);
    CHECK(engine.faults().empty());
    CHECK_ERROR(engine.processes().destroy(12), "no live process has the id 12");
    CHECK(runtime().ParamCount() == 0);
    CHECK(engine.faults() == std::vector<std::string>{"ParamCount was called outside a script call"});
}

TEST_CASE("Script globals are laid out as declared and follow the data area when it moves") {
    host::Engine engine;
    engine.globals().declare("struct probe[3]int a  =5;int b=-6; end\n struct lone int only=2147483647;end ");
    CHECK_ERROR(engine.globals().declare("struct lone int x; end"), "'lone' exists already");
    CHECK(engine.global("probe", 2, "a") == 5);
    CHECK(engine.global("lone", 0, "only") == INT32_MAX);
    CHECK(&engine.global("probe", 1, "a") == &engine.global("probe", 0, "b") + 1);
    CHECK_ERROR(engine.global("prob", 0, "a"), "no global 'prob'");
    CHECK_ERROR(engine.global("probe", 3, "a"), "elements 0 to 2, not 3");
    CHECK_ERROR(engine.global("probe", 0, "c"), "no field 'c'; it has a, b");
    const std::int32_t offset = engine.runtime().GlobalOffset(0, "probe.b");
    CHECK(offset == engine.runtime().GlobalOffset(0, "probe") + 4);
    for (std::int32_t value = -6; value < 0; ++value) {
        const std::uint8_t* before = engine.runtime().GlobalData;
        engine.move_globals();
        CHECK(engine.runtime().GlobalData != before);
        auto* b = reinterpret_cast<std::int32_t*>(engine.runtime().GlobalData + offset);
        CHECK(*b == value);
        ++*b;
        CHECK(engine.global("probe", 0, "b") == value + 1);
    }
    CHECK(engine.untouched().empty());
    engine.runtime().GlobalData[0] ^= 1;
    CHECK(engine.untouched().size() == 1);

    const char* bad[][2] = {{"struct s[2] int x; ", "expected 'int' at character 19"},
                            {"struct s[0] int x; end", "a count of at least 1"},
                            {"struct s[2 int x; end", "expected ']' at character 11, found \"int x; end\""},
                            {"struct 2s int x; end", "expected a name at character 7"},
                            {"struct s int x = 2147483648; end", "a number of 32 bits"},
                            {"struct s int x; int x; end", "no second field 'x'"},
                            {"struct s end", "a field before 'end'"},
                            {"struct s[99999999] int x; end", "at most"}};
    for (const auto& [text, error] : bad) CHECK_ERROR(host::compile_globals(text), error);
}

TEST_CASE("Files count their maps, and replacing or unloading one takes its memory away") {
    host::Engine engine({.bits_per_pixel = 16, .file_slots = 4, .system_graph_count = 20});
    host::Files& files = engine.files();
    const Graphics2DInterface& graphics = engine.graphics();
    CHECK(graphics.FileCount() == 4);
    CHECK(graphics.SystemGraphCount() == 20);
    std::vector<std::byte> pixels(3 * 2 * 2, std::byte{7});
    pixels[8] = std::byte{9};
    host::Map& map = files.create_map(2, 7, 3, 2, pixels);
    CHECK(map.pixel(1, 1) == 0x0709);
    CHECK(map.row(1)[2] == std::byte{9});
    REQUIRE(graphics.GetMap(2, 7) != nullptr);
    CHECK(graphics.GetMap(2, 7)->bitmap == &map.record());
    CHECK(map.record().pixels == map.bytes().data());
    const void* old_pixels = map.record().pixels;
    files.create_map(2, 8, 1, 1);
    CHECK(files.create_map(2, 7, 3, 2).record().pixels != old_pixels);
    CHECK(files.graphs(2) == std::vector<std::int32_t>{7, 8});
    CHECK(graphics.GetFile(2)->word2 == 2);
    files.unload_map(2, 7);
    CHECK(graphics.GetMap(2, 7) == nullptr);
    CHECK(graphics.GetFile(2)->word2 == 1);
    files.create_map(0, 3, 1, 1);
    files.unload_file(2);
    files.unload_file(0);
    CHECK(graphics.GetFile(2) == nullptr);
    CHECK(graphics.GetFile(0)->word2 == 0);
    CHECK(graphics.GetMap(0, 3) == nullptr);

    CHECK_ERROR(files.create_map(4, 1, 1, 1), "file 4 is not one of 0 to 3");
    CHECK_ERROR(files.create_map(1, 1000, 1, 1), "map 1000 of file 1 is not one of 0 to 999");
    CHECK_ERROR(files.create_map(0, 20, 1, 1), "0 to 19");
    CHECK_ERROR(files.create_map(1, 1, 0, 5), "cannot be 0 x 5");
    CHECK_ERROR(files.create_map(1, 1, 70000, 70000), "cannot be 70000 x 70000");
    CHECK_ERROR(files.create_map(1, 1, 3, 2, std::span(pixels).first(5)), "takes 12 bytes, not 5");
    CHECK_ERROR(files.create_file(0), "in use");
    CHECK(files.find_file(1) == nullptr);  // none of the refused maps left its file behind
}

TEST_CASE("Fenced memory ends at unreadable pages, and writes beside it show") {
    for (const host::Fence fence : {host::Fence::after, host::Fence::before}) {
        host::Engine engine({.width = 13, .height = 7, .bits_per_pixel = 8, .fence = fence});
        const bool after = fence == host::Fence::after;
        std::span<std::byte> map = engine.files().create_map(1, 1, 5, 5).bytes();
        auto* table = reinterpret_cast<std::byte*>(engine.graphics().Regions);
        for (const std::span<std::byte> block :
             {map, engine.screen().bytes(),
              std::span(table, static_cast<std::size_t>(engine.regions().count()) * 16)}) {
            CHECK(tests::is_readable(block.data()));
            CHECK(tests::is_readable(&block.back()));
            CHECK(tests::is_readable(block.data() + block.size()) != after);
            CHECK(tests::is_readable(block.data() - 1) == after);
        }
        CHECK(engine.untouched().empty());
        (after ? map.data()[-1] : map.data()[map.size()]) = std::byte{0};
        REQUIRE(engine.untouched().size() == 1);
        CHECK(engine.untouched()[0] == "pixels 1/1: memory beside them was written");
    }
}

TEST_CASE("Regions are kept, also when the table grows, shrinks and moves") {
    host::Engine engine({.width = 50, .height = 40, .region_slots = 4});
    host::Regions& regions = engine.regions();
    const Graphics2DInterface& graphics = engine.graphics();
    regions.define(3, -1, -2, 30, 40);
    const __RVKRegion__* before = graphics.Regions;
    regions.resize(9);
    CHECK(graphics.Regions != before);
    CHECK(graphics.RegionCount() == 9);
    for (std::int32_t region = -1; region < 10; ++region)
        CHECK((graphics.RegionDefined(region) != 0) == (region == 0 || region == 3));
    regions.undefine(3);
    CHECK(graphics.RegionDefined(3) == 0);
    const auto* edges = &graphics.Regions[0].x;
    CHECK(std::vector(edges, edges + 4) == std::vector{0, 49, 0, 39});
    CHECK(std::vector(edges + 12, edges + 16) == std::vector{-1, 30, -2, 40});
    regions.resize(3);
    CHECK_ERROR(regions.define(3, 0, 0, 1, 1), "region 3 is not one of 0 to 2");
}

TEST_CASE("A write to any word that belongs to the host alone is found and named") {
    host::Engine engine;
    host::Map& map = engine.files().create_map(1, 2, 4, 4);
    ProcessLocals& process = engine.processes().create(host::scroll_coordinates);
    __RVKBlit2D__* entry = engine.graphics().NewBlit();
    // Each with a word that has no name; of the last two the upper part of a word whose low byte has one.
    const struct {
        void* record;
        std::size_t word;
        const char* name;
    } places[] = {{&engine.registrar(), 1, "ExportRegistrar"},
                  {&engine.runtime(), 8, "HostRuntime"},
                  {&engine.graphics(), 86, "Graphics2DInterface"},
                  {&engine.process_services(), 0, "ProcessServices"},
                  {&engine.frame_state(), 6, "FrameState"},
                  {&map.entry(), 130, "MapEntry 1/2"},
                  {engine.graphics().GetFile(1), 0, "FileRecord 1"},
                  {&engine.screen().record(), 3, "MapRecord of the screen"},
                  {&process, 3, "ProcessLocals of process 0"},
                  {engine.processes().first(host::scroll_coordinates), 14, "ProcessNode of process 0"},
                  {entry, 35, "__RVKBlit2D__ 0 of the main list"},
                  {engine.graphics().GetBlitList(), 5, "BlitList of the main list"},
                  {&map.record(), 8, "MapRecord 1/2"},
                  {&engine.video(), 8, "VideoInfo"}};
    for (const auto& place : places) {
        std::byte* at = static_cast<std::byte*>(place.record) + 4 * place.word + 3;
        CHECK(engine.untouched().empty());
        *at ^= std::byte{0x10};
        const auto found = engine.untouched();
        REQUIRE(found.size() == 1);
        CHECK(found[0].starts_with(place.name + (": word " + std::to_string(place.word))));
        *at ^= std::byte{0x10};
    }
}
