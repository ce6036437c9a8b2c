// The host as a world: loading, calls, globals, files, regions, processes, lists, and its watch over the
// contract.
#define DOCTEST_CONFIG_IMPLEMENT_WITH_MAIN
#include <doctest/doctest.h>
#include <unistd.h>

#include <algorithm>
#include <map>
#include <random>

#include "host/engine.h"

namespace {

enum Flaw { kNoFlaw, kNeedsMore, kBadGlobals, kBadSignature, kUnknownGlobal, kEarlyCall, kTwice, kNoExports };

std::string standin(Flaw flaw = kNoFlaw) {
    return STANDIN_STEM + std::to_string(flaw) + ".so";
}

template <class Work>
std::string error_of(Work&& work) {
    try {
        work();
    } catch (const host::Error& e) {
        return e.what();
    }
    return "no error";
}

#define CHECK_ERROR(expression, part) \
    CHECK(error_of([&] { static_cast<void>(expression); }).find(part) != std::string::npos)

// Whether a byte can be read: the kernel refuses to copy one that cannot.
bool readable(const std::byte* at) {
    int ends[2];
    REQUIRE(pipe(ends) == 0);
    const ssize_t copied = write(ends[1], at, 1);
    close(ends[0]);
    close(ends[1]);
    return copied == 1;
}

}  // namespace

TEST_CASE("A module is registered as it declares itself, each load afresh, and is told when it goes") {
    std::int32_t released = 0;
    for (int round = 1; round <= 3; ++round) {
        host::Engine engine;
        engine.load(standin());
        CHECK(engine.constant("seven") == 7);
        CHECK(engine.constant("minus_one") == -1);
        CHECK_ERROR(engine.constant("eight"), "no constant 'eight'");
        CHECK(engine.functions().size() == 9);
        CHECK(engine.call("count_calls", {}).value == 1);
        REQUIRE(engine.services() != nullptr);
        *static_cast<std::int32_t**>(engine.symbol("standin_release_counter")) = &released;
        CHECK_ERROR(engine.load(standin()), "loaded already");
        CHECK_ERROR(host::Engine{}, "an engine lives already");
        engine.frame();
        CHECK(engine.faults().empty());
        CHECK(engine.untouched().empty());
        if (round == 2) {
            engine.unload();
            CHECK(released == 2);
            CHECK(engine.services() == nullptr);
            CHECK_ERROR(engine.call("count_calls", {}), "there are: none");
            engine.frame();
            engine.load(standin());
            CHECK(engine.call("count_calls", {}).value == 1);
        }
    }
    CHECK(released == 3);
}

TEST_CASE("A module that cannot be loaded is refused with the reason, and the engine takes the next one") {
    host::Engine engine;
    CHECK_ERROR(engine.load("no/such/module.so"), "no module file no/such/module.so");
    CHECK_ERROR(engine.load("/proc/self/exe"), "cannot load");
    CHECK_ERROR(engine.load(standin(kNoExports)), "does not export RVK_mod_scroll2D_MainLibraryDependencies");
    CHECK_ERROR(engine.load(standin(kNeedsMore)), "needs RVK_mod_sound");
    CHECK_ERROR(engine.load(standin(kBadGlobals)), "expected a number of 32 bits at character 24");
    CHECK_ERROR(engine.load(standin(kBadSignature)), "odd(I,S)");
    CHECK_ERROR(engine.load(standin(kUnknownGlobal)), "'probe.x', which is not declared");
    CHECK_ERROR(engine.load(standin(kEarlyCall)), "NewBlit was called during registration");
    CHECK_ERROR(engine.load(standin(kTwice)), "twice or out of order");
    const BlitRoutine routine = std::exchange(engine.graphics().BlitSpriteScaled, nullptr);
    CHECK_ERROR(engine.load(standin()), "Graphics2DInterface.BlitSpriteScaled is null");
    engine.graphics().BlitSpriteScaled = routine;
    CHECK_FALSE(engine.loaded());
    engine.load(standin());
    CHECK(engine.constants().size() == 2);
}

TEST_CASE("A call is bound by name and number of arguments and watched until it returns") {
    host::Engine engine;
    engine.load(standin());
    CHECK(engine.call("sum", {1, 2}).value == 12);
    CHECK(engine.call("sum", {1, 2, 3}).value == 123);
    CHECK_ERROR(engine.call("sum", {1}), "sum takes 2 or 3 arguments, not 1");
    CHECK_ERROR(engine.call("summ", {1}),
                "there is no function 'summ'; there are: count_calls, delete_masked");
    CHECK(engine.faults().empty());

    const host::CallResult failed = engine.call("fail", {12});
    CHECK(failed.failed());
    REQUIRE(failed.errors.size() == 1);
    CHECK(failed.errors[0] == host::ScriptError{107, "FAIL", 0, 1, 12});
    CHECK(failed.errors[0].text() == "FAIL: scroll number out of range (error 107, argument 1, value 12)");
    CHECK(engine.call("sum", {4, 4}).errors.empty());
    CHECK(engine.errors() == failed.errors);

    const char* breaches[] = {
        "PopInt was called more often",           "left 1 arguments", "did not call ReturnInt",
        "did not return what ReturnInt returned", "not alive",        "not a list"};
    for (std::int32_t what = 1; what <= 6; ++what) {
        engine.call("misbehave", {0, what});
        CAPTURE(what);
        REQUIRE(engine.faults().size() == 1);
        CHECK(engine.faults()[0].find(breaches[what - 1]) != std::string::npos);
        engine.clear_faults();
    }
}

TEST_CASE("Script globals are laid out as declared and follow the data area when it moves") {
    host::Engine engine;
    engine.load(standin());
    for (std::int32_t i = 0; i < 3; ++i) {
        CHECK(engine.global("probe", i, "a") == 5);
        CHECK(engine.global("probe", i, "b") == -6);
    }
    CHECK(engine.global("lone", 0, "only") == 0);
    CHECK(&engine.global("probe", 1, "a") == &engine.global("probe", 0, "b") + 1);
    CHECK_ERROR(engine.global("prob", 0, "a"), "no global 'prob'");
    CHECK_ERROR(engine.global("probe", 3, "a"), "elements 0 to 2, not 3");
    CHECK_ERROR(engine.global("probe", 0, "c"), "no field 'c'; it has a, b");

    for (std::int32_t round = 0; round < 4; ++round) {
        const std::uint8_t* before = engine.runtime().GlobalData;
        engine.move_globals();
        CHECK(engine.runtime().GlobalData != before);
        engine.global("probe", 1, "a") = 70 + round;
        CHECK(engine.call("set_probe", {1, round}).value == 70 + round);
        CHECK(engine.global("probe", 1, "b") == round);
    }
    CHECK(engine.globals().structs().size() == 2);
    CHECK(engine.untouched().empty());
}

TEST_CASE("The declaration language takes what it describes and names the place of anything else") {
    const auto structs =
        host::compile_globals("struct s[2]int x=-7;int y ;end struct t int endless=2147483647; end");
    REQUIRE(structs.size() == 2);
    CHECK(structs[0].count == 2);
    CHECK(structs[0].fields[0].default_value == -7);
    CHECK(structs[1].fields[0].name == "endless");
    CHECK(structs[1].fields[0].default_value == INT32_MAX);
    CHECK(host::compile_globals(" \n").empty());
    const struct {
        const char* text;
        const char* error;
    } bad[] = {
        {"struct s[2] int x; ", "expected 'int' at character 19"},
        {"struct s[0] int x; end", "a count of at least 1"},
        {"struct s[2 int x; end", "expected ']' at character 11, found \"int x; end\""},
        {"struct 2s int x; end", "expected a name at character 7"},
        {"struct s int x = 2147483648; end", "a number of 32 bits"},
        {"struct s int x end", "expected ';'"},
        {"struct s int x; int x; end", "no second field 'x'"},
        {"struct s end", "a field before 'end'"},
        {"struct s[99999999] int x; end", "at most"},
        {"int x;", "expected 'struct'"},
    };
    for (const auto& declaration : bad) {
        CAPTURE(declaration.text);
        CHECK_ERROR(host::compile_globals(declaration.text), declaration.error);
    }
}

TEST_CASE("Files count their maps, and replacing or unloading one takes its memory away") {
    host::Engine engine({.bits_per_pixel = 16, .file_slots = 4, .system_graph_count = 20});
    host::Files& files = engine.files();
    HostRuntime& runtime = engine.runtime();
    CHECK(runtime.Graphics->FileCount() == 4);
    CHECK(runtime.Graphics->SystemGraphCount() == 20);
    CHECK(runtime.Graphics->GetFile(0)->word2 == 0);
    CHECK(runtime.Graphics->GetFile(2) == nullptr);

    std::vector<std::byte> pixels(3 * 2 * 2);
    for (std::size_t i = 0; i < pixels.size(); ++i) pixels[i] = static_cast<std::byte>(i + 1);
    host::Map& map = files.create_map(2, 7, 3, 2, pixels);
    CHECK(map.pixel(1, 1) == 0x0A09);
    CHECK(map.row(1)[0] == std::byte{7});
    const MapEntry* entry = runtime.Graphics->GetMap(2, 7);
    REQUIRE(entry != nullptr);
    CHECK(entry->word0 != 0);
    CHECK(entry->bitmap == &map.record());
    CHECK(entry->bitmap->pixels == map.bytes().data());
    CHECK(entry->bitmap->width * entry->bitmap->height == 6);
    const __RVKPoint2D__ points[] = {{2, 1}, {-5, 900}};
    map.set_control_points(points);
    CHECK(entry->bitmap->cpoint_count == 2);
    CHECK(entry->bitmap->cpoints[1].y == 900);
    files.create_map(2, 8, 1, 1);
    CHECK(runtime.Graphics->GetFile(2)->word1 != 0);
    CHECK(runtime.Graphics->GetFile(2)->word2 == 2);

    const void* old_pixels = map.record().pixels;
    CHECK(files.create_map(2, 7, 3, 2).record().pixels != old_pixels);
    CHECK(files.graphs(2) == std::vector<std::int32_t>{7, 8});
    files.unload_map(2, 7);
    CHECK(runtime.Graphics->GetMap(2, 7) == nullptr);
    CHECK(runtime.Graphics->GetFile(2)->word2 == 1);
    files.unload_file(2);
    files.unload_file(0);
    CHECK(runtime.Graphics->GetFile(2) == nullptr);
    CHECK(runtime.Graphics->GetFile(0) != nullptr);
    CHECK(runtime.Graphics->GetFile(-1) == nullptr);

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
        std::span<std::byte> map = engine.files().create_map(1, 1, 5, 5).bytes();
        std::span<std::byte> screen = engine.screen().bytes();
        const auto* table = reinterpret_cast<std::byte*>(engine.graphics().Regions);
        const bool after = fence == host::Fence::after;
        CHECK(readable(map.data()));
        CHECK(readable(&map.back()));
        CHECK(readable(map.data() + map.size()) != after);
        CHECK(readable(map.data() - 1) == after);
        CHECK(readable(screen.data() + screen.size()) != after);
        CHECK(readable(screen.data() - 1) == after);
        CHECK(readable(table + engine.regions().count() * 16) != after);
        CHECK(readable(table - 1) == after);
        CHECK(engine.untouched().empty());
        (after ? map.data()[-1] : map.data()[map.size()]) = std::byte{0};
        REQUIRE(engine.untouched().size() == 1);
        CHECK(engine.untouched()[0] == "pixels 1/1: memory beside them was written");
    }
}

TEST_CASE("Regions are kept, also when the table grows, shrinks and moves") {
    host::Engine engine({.width = 50, .height = 40, .region_slots = 4});
    host::Regions& regions = engine.regions();
    CHECK(regions.at(0).x2 == 49);
    CHECK(regions.at(0).y2 == 39);
    regions.define(3, -1, -2, 30, 40);
    CHECK(engine.graphics().Regions[3].x == -1);
    CHECK(engine.graphics().Regions[3].x2 == 30);
    CHECK(engine.graphics().Regions[3].y == -2);
    const __RVKRegion__* before = engine.graphics().Regions;
    regions.resize(9);
    CHECK(engine.graphics().Regions != before);
    CHECK(engine.graphics().RegionCount() == 9);
    CHECK(engine.graphics().Regions[3].y2 == 40);
    CHECK(engine.graphics().RegionDefined(3) != 0);
    CHECK(engine.graphics().RegionDefined(8) == 0);
    CHECK(engine.graphics().RegionDefined(9) == 0);
    CHECK(engine.graphics().RegionDefined(-1) == 0);
    regions.undefine(3);
    CHECK(engine.graphics().RegionDefined(3) == 0);
    CHECK(engine.graphics().Regions[3].y2 == 40);
    regions.resize(3);
    CHECK_ERROR(regions.define(3, 0, 0, 1, 1), "region 3 is not one of 0 to 2");
}

TEST_CASE("Process lists keep their order under random births, deaths and changes of type") {
    std::mt19937 random(7);
    host::Engine engine;
    engine.load(standin());
    host::Processes& processes = engine.processes();
    std::map<std::int32_t, std::vector<std::int32_t>> model;
    std::vector<std::int32_t> deaths;
    processes.on_delete = [&](std::int32_t id) {
        CHECK(processes.exists(id));
        deaths.push_back(id);
    };
    const auto chain = [&](std::int32_t type) {
        std::vector<std::int32_t> ids;
        for (ProcessNode* node = engine.process_services().FirstProcessOfType(type); node != nullptr;
             node = node->next)
            ids.push_back(host::Processes::id_of(*node->data));
        return ids;
    };
    for (int step = 0; step < 3000; ++step) {
        const auto type = static_cast<std::int32_t>(random() % 3);
        std::vector<std::int32_t>& list = model[type];
        switch (random() % 4) {
            case 0:
            case 1: {
                ProcessLocals& locals = processes.create(type);
                locals.scroll_mask = static_cast<std::int32_t>(random() % 4);
                list.push_back(host::Processes::id_of(locals));
                break;
            }
            case 2: {
                if (list.empty()) break;
                const auto place = list.begin() + static_cast<std::ptrdiff_t>(random() % list.size());
                const std::int32_t id = *place;
                const auto other = static_cast<std::int32_t>(random() % 3);
                processes.set_type(id, other);
                CHECK(processes.type_of(id) == other);
                if (other == type) break;
                list.erase(place);
                model[other].push_back(id);
                break;
            }
            default: {
                const auto mask = static_cast<std::int32_t>(random() % 4);
                std::vector<std::int32_t> expected_deaths;
                std::erase_if(model[1], [&](std::int32_t id) {
                    const bool dies = processes.find(id)->scroll_mask == mask;
                    if (dies) expected_deaths.push_back(id);
                    return dies;
                });
                deaths.clear();
                CHECK(engine.call("delete_masked", {mask}).value ==
                      static_cast<std::int32_t>(model[1].size()));
                CHECK(deaths == expected_deaths);
                for (const std::int32_t id : deaths) CHECK(engine.process_services().ProcessExists(id) == 0);
            }
        }
        CAPTURE(step);
        for (std::int32_t t = 0; t < 3; ++t) REQUIRE(chain(t) == model[t]);
    }
    CHECK(processes.count() == model[0].size() + model[1].size() + model[2].size());
    CHECK_ERROR(processes.destroy(12), "no live process has the id 12");
    CHECK(engine.faults().empty());
    CHECK(engine.untouched().empty());
}

TEST_CASE("Blit lists sort by falling z and keep the order of equals, whatever is added between") {
    std::mt19937 random(11);
    host::Engine engine;
    Graphics2DInterface& g = engine.graphics();
    void* list = g.CreateBlitList("A", 256, 256);
    for (int round = 0; round < 50; ++round) {
        CHECK(g.SelectBlitList(list) != 0);
        std::vector<std::pair<std::int32_t, std::int32_t>> model;  // -z, serial
        for (std::int32_t i = 0; i < static_cast<std::int32_t>(random() % 300); ++i) {
            __RVKBlit2D__* entry = g.NewBlit();
            entry->id = i;
            entry->z = static_cast<std::int32_t>(random() % 7) - 3;
            model.emplace_back(-entry->z, i);
            if (random() % 50 == 0) g.SortBlitList();
        }
        // Sorting in between changes nothing: what is stable stays stable.
        g.SortBlitList();
        std::sort(model.begin(), model.end());
        REQUIRE(g.BlitListCount() == static_cast<std::int32_t>(model.size()));
        for (std::size_t i = 0; i < model.size(); ++i)
            REQUIRE(g.GetBlitList()->zorder[i]->id == model[i].second);
        CHECK(g.SelectBlitList(nullptr) != 0);
        CHECK(g.BlitListCount() == 0);
        g.SelectBlitList(list);
        g.ClearBlitList();
        CHECK(g.BlitListCount() == 0);
    }
    CHECK(g.SelectBlitList(&engine) == 0);
    CHECK(&engine.blit_lists().current() == engine.blit_lists().find("A"));
    const __RVKBlit2D__* fresh = g.NewBlit();
    CHECK(fresh->drawn == 0);
    CHECK(static_cast<std::uint32_t>(fresh->pos_x) == host::pattern_word(12));
}

TEST_CASE("A write to any word that belongs to the host alone is found and named") {
    host::Engine engine;
    host::Map& map = engine.files().create_map(1, 2, 4, 4);
    ProcessLocals& process = engine.processes().create(host::scroll_coordinates);
    __RVKBlit2D__* entry = engine.graphics().NewBlit();
    ProcessNode* node = engine.processes().first(host::scroll_coordinates);
    // Each with a word that has no name; the last is the upper part of a word whose low byte has one.
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
                  {engine.graphics().GetFile(1), 0, "FileRecord"},
                  {&engine.screen().record(), 3, "MapRecord of the screen"},
                  {&process, 3, "ProcessLocals of process 0"},
                  {node, 14, "ProcessNode of process 0"},
                  {entry, 35, "__RVKBlit2D__ 0 of the main list"},
                  {engine.graphics().GetBlitList(), 5, "BlitList"},
                  {&map.record(), 8, "MapRecord 1/2"},
                  {&engine.video(), 8, "VideoInfo"}};
    for (const auto& place : places) {
        CAPTURE(place.name);
        std::byte* at = static_cast<std::byte*>(place.record) + 4 * place.word + 3;
        const std::byte before = *at;
        CHECK(engine.untouched().empty());
        *at ^= std::byte{0x10};
        const auto found = engine.untouched();
        REQUIRE(found.size() == 1);
        CHECK(found[0].find(place.name) != std::string::npos);
        CHECK(found[0].find("word " + std::to_string(place.word) + " ") != std::string::npos);
        *at = before;
    }
    engine.runtime().GlobalData[0] ^= 1;
    CHECK(engine.untouched().size() == 1);
}
