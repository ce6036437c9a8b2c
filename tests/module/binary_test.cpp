// The finished file: what it needs, what it shows, and that any caller may enter it.
#include <doctest/doctest.h>

#include <cstdio>
#include <fstream>
#include <iterator>
#include <set>
#include <sstream>

#include "tests/module/misaligned_call.h"
#include "tests/module/module_fixture.h"

namespace {

using namespace tests;
using Names = std::set<std::string>;

// The lines that readelf prints, each as its words.
std::vector<std::vector<std::string>> readelf(const std::string& options) {
    FILE* const pipe = popen(("LC_ALL=C readelf -W " + options + " " SCROLL2D_MODULE).c_str(), "r");
    std::string text;
    for (int c = std::fgetc(pipe); c != EOF; c = std::fgetc(pipe)) text += static_cast<char>(c);
    REQUIRE(pclose(pipe) == 0);
    std::vector<std::vector<std::string>> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) {
        std::istringstream words(line);
        lines.emplace_back(std::istream_iterator<std::string>(words), std::istream_iterator<std::string>());
    }
    return lines;
}

// Num: Value Size Type Bind Vis Ndx Name@version
Names symbols(bool defined) {
    Names names;
    for (const auto& words : readelf("--dyn-syms"))
        if (words.size() > 7 && words[0] != "Num:" && (words[6] != "UND") == defined &&
            (defined || words[4] != "WEAK"))
            names.insert(words[7].substr(0, words[7].find('@')));
    return names;
}

// The names of the version script's global part.
Names listed_exports() {
    std::ifstream text(SCROLL2D_EXPORTS);
    Names names;
    for (std::string word; text >> word && word != "local:";)
        if (word.size() > 1 && word.back() == ';') names.insert(word.substr(0, word.size() - 1));
    return names;
}

TEST_CASE("the file is a 32-bit module that shows the listed symbols and no others") {
    std::string header;
    for (const auto& words : readelf("-h"))
        for (const std::string& word : words) header += word + " ";
    for (const char* what : {"Class: ELF32", "little endian", "Machine: Intel 80386", "Type: DYN"})
        CHECK(header.find(what) != std::string::npos);
    const Names exported = symbols(true);
    for (const std::string& name : exported) CHECK((name == "rvkre" || name.starts_with("RVK_")));
    CHECK(exported.size() == 12);
    CHECK((exported == listed_exports()));
}

// Sanitizers and asserts need more; what ships needs this.
TEST_CASE("the file is small, and needs malloc, free and memcpy of the C library and nothing else" *
          doctest::skip(!SCROLL2D_SHIPS)) {
    // Where the part that a program maps ends; stripping leaves little more than that.
#ifdef __clang__
    constexpr std::uint32_t limit = 270'000;  // not the compiler that makes what ships
#else
    constexpr std::uint32_t limit = 180'000;
#endif
    constexpr std::uint32_t section_headers = 2'000;
    std::uint32_t end_of_loaded = 0;
    for (const auto& words : readelf("-l"))
        if (words.size() > 4 && words[0] == "LOAD")
            end_of_loaded = static_cast<std::uint32_t>(std::stoul(words[1], nullptr, 16) +
                                                       std::stoul(words[4], nullptr, 16));
    CHECK(end_of_loaded > 0);
    CHECK(end_of_loaded < limit - section_headers);
    CHECK((symbols(false) == Names{"free", "malloc", "memcpy"}));
    Names needed;
    for (const auto& words : readelf("-d")) {
        if (words.size() < 2) continue;
        CHECK(words[1] != "(TEXTREL)");
        if (words[1] == "(NEEDED)") needed.insert(words.back());
    }
    CHECK((needed == Names{"[libc.so.6]"}));
}

// A host with slots of its own, so that script functions too are entered from a misaligned stack.
struct MisalignedFixture : Fixture {
    std::uint32_t shift;
    Words stack;
    std::size_t given = 0;
    Replaced<&HostRuntime::PopInt> pop{engine.runtime(), [this] {
                                           const std::int32_t last = stack.back();
                                           stack.pop_back();
                                           return last;
                                       }};
    Replaced<&HostRuntime::ParamCount> count{engine.runtime(),
                                             [this] { return static_cast<std::int32_t>(given); }};
    BlitRoutine layer = nullptr;  // of the layer entry drawn last: nothing else is on the list
    Replaced<&Graphics2DInterface::SortBlitList> sort{
        engine.graphics(), [this] {
            layer = engine.blit_lists().current().entries().front()->draw;
            return sort.original();
        }};
    Replaced<&HostRuntime::ReturnInt> result{engine.runtime(), [](std::int32_t value) { return value; }};

    MisalignedFixture(std::int32_t bits_per_pixel, std::uint32_t shift_by)
        : Fixture(bits_per_pixel), shift(shift_by) {}

    void probe_slots() {
        using G = Graphics2DInterface;
        probe<&G::CreateBlitList, &G::SelectBlitList, &G::NewBlit, &G::SortBlitList, &G::ClearBlitList,
              &G::GetBlitList, &G::BlitListCount, &G::GetFile, &G::FileCount, &G::SystemGraphCount,
              &G::RegionCount, &G::GetMap, &G::RegionDefined>(engine.graphics());
        using R = HostRuntime;
        probe<&R::PopInt, &R::ParamCount, &R::ReturnInt, &R::RaiseError, &R::GlobalOffset, &R::DeleteProcess>(
            engine.runtime());
        using P = ProcessServices;
        probe<&P::FirstProcessOfType, &P::ProcessExists>(engine.process_services());
    }
    std::int32_t enter(const char* handler, Words arguments) {
        stack = std::move(arguments);
        given = stack.size();
        const auto function = reinterpret_cast<std::int32_t (*)()>(engine.symbol(handler));
        return call_misaligned(shift, function);
    }
    void hook(const char* name) { call_misaligned(shift, reinterpret_cast<void (*)()>(engine.symbol(name))); }
    std::int32_t blit() {
        hook("RVK_mod_scroll2D_frame");
        host::BlitQueue& main = engine.blit_lists().main();
        std::int32_t drawn = 0;
        for (__RVKBlit2D__* entry : std::vector<__RVKBlit2D__*>(main.entries()))
            drawn += call_misaligned(shift, entry->draw, entry);
        main.clear();
        return drawn;
    }
};

// Frames that the address sanitizer instruments are 32 bytes aligned by whoever calls, -mstackrealign or not.
#ifdef __SANITIZE_ADDRESS__
constexpr std::uint32_t kShifts[] = {0};
#else
constexpr std::uint32_t kShifts[] = {0, 4, 8, 12};
#endif

TEST_CASE("every entry point works for callers that keep their stack on four bytes") {
    for (const std::uint32_t shift : kShifts) {
        for (const std::int32_t bits : {8, 16, 32}) {
            CAPTURE(shift);
            CAPTURE(bits);
            MisalignedFixture f(bits, shift);
            f.hook("RVK_mod_scroll2D_release");
            const auto exports = reinterpret_cast<std::int32_t (*)(const ExportRegistrar*)>(
                f.engine.symbol("RVK_mod_scroll2D_MainLibraryExports"));
            ExportRegistrar silent{};
            silent.RegisterConstants = [](const ConstantRow*) {};
            silent.RegisterGlobals = [](const char*) {};
            silent.RegisterFunctions = [](const FunctionRow*) {};
            silent.RegisterHooks = [](const HookRow*) {};
            silent.GetRuntime = [] { return &host::Engine::live()->runtime(); };
            CHECK(call_misaligned(shift, exports, static_cast<const ExportRegistrar*>(&silent)) == 1);
            void* own = nullptr;  // the list, once init has asked for it
            Replaced<&Graphics2DInterface::CreateBlitList> create(
                f.graphics(),
                [&](const char* name, auto...) { return own = f.engine.blit_lists().find(name); });
            f.probe_slots();
            f.hook("RVK_mod_scroll2D_init");
            CHECK((own != nullptr));

            // Every kind of plane drawing, over widths that leave a tail after whole vectors.
            for (const std::int32_t graph : {1, 2}) f.map(graph, 90, 80);
            f.engine.regions().define(1, 1, 1, 1 + 4 * 8 + 5, 40);
            f.engine.processes().create(host::scroll_coordinates);
            for (const std::int32_t alpha_flags : {0, 1, 2, 3}) {
                f.engine.files().find_map(kFile, 1)->set_alpha_flag((alpha_flags & 1) != 0);
                f.engine.files().find_map(kFile, 2)->set_alpha_flag((alpha_flags & 2) != 0);
                for (const std::int32_t graph2 : {0, 2}) {
                    for (const std::int32_t mode : {0, 1, 2, 3}) {
                        CHECK(f.enter("RVK_scroll_start", {0, kFile, 1, graph2, 1, 15, mode}) == 0);
                        for (const std::int32_t alpha : {255, 100}) {
                            f.script(0, "alpha") = alpha;
                            for (const std::int32_t step : {1, -1, 5, -7, 30}) {
                                f.script(0, "x0") += step;
                                f.script(0, "y1") -= step;
                                CHECK(f.blit() == 1);
                            }
                        }
                    }
                }
            }
            CHECK(f.enter("RVK_scroll_move", {-1}) == 1);
            CHECK(f.enter("RVK_scroll_refresh", {0}) == 1);
            CHECK(f.enter("RVK_scroll_set_destination", {-1, 0, 0, -1}) == 10);
            f.hook("RVK_mod_scroll2D_update");

            const ScrollSystemInterface& s = f.services();
            __RVKRegion__ region{};
            __RVKPoint2D__ point{};
            CHECK(call_misaligned(shift, s.GetScrollRegion, 0, 1, 2, 3, 4, 5, &region) == 1);
            CHECK(call_misaligned(shift, s.GetScrollPoint, 0, 0, &point) == 1);
            CHECK(call_misaligned(shift, s.GetScrollPos, 0, 0, &point, &point) == 1);
            CHECK(call_misaligned(shift, s.GetProcessInScroll, 0, 1) == 1);
            CHECK(call_misaligned(shift, s.GetProcessOutScroll, 0, 2) == 1);

            // The routine of a layer entry, as a host would call it from its own list.
            CHECK(f.enter("RVK_scroll_start", {0, kFile, 1, 2, 1, 15, 1}) == 0);
            CHECK(f.blit() == 1);
            REQUIRE((f.layer != nullptr));
            CHECK(call_misaligned(shift, f.layer, static_cast<__RVKBlit2D__*>(nullptr)) == 1);

            CHECK(f.enter("RVK_scroll_stop", {0}) == 1);
            CHECK(f.enter("RVK_scroll_start", {7, kFile, 1, 2, 1, 15}) == 7);
            call_misaligned(shift, s.StopScroll, 7);
            call_misaligned(shift, s.StopAllScroll);
            CHECK_FALSE(f.running(7));
            CHECK(f.errors().empty());
            CHECK(misaligned_slots == 0);
        }
    }
}

}  // namespace
