// The finished file of x86: any caller may enter it, whatever its stack is aligned to.
#include <doctest/doctest.h>

#include "tests/module/misaligned_call.h"
#include "tests/module/module_fixture.h"

namespace {

using namespace tests;

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
