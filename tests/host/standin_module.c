/*
 * A stand-in for the module: the little that a host sees while it loads one and lets it go, or one thing
 * wrong with it, which the environment variable STANDIN_FLAW names. A module's calls are played by the test
 * itself.
 */
#include <stdlib.h>
#include <string.h>

#include "module/contract/host_records.h"

#define EXPORT __attribute__((visibility("default")))

static HostRuntime* runtime;
static ScrollSystemInterface services;
static int32_t calls;

/* Counted where the host can see it, even after the module is closed. */
EXPORT int32_t* standin_release_counter;

EXPORT const char* RVK_mod_scroll2D_MainLibraryDependencies[] = {"RVK_mod_graphics2D", 0};

static int flawed(const char* flaw) {
    const char* wanted = getenv("STANDIN_FLAW");
    return wanted && strcmp(wanted, flaw) == 0;
}

__attribute__((constructor)) static void depend(void) {
    if (flawed("needs more")) RVK_mod_scroll2D_MainLibraryDependencies[0] = "RVK_mod_sound";
}

static int32_t count_calls(void) {
    return runtime->ReturnInt(++calls);
}

static void init(void) {
    runtime->Graphics->ScrollSystem = &services;
    runtime->GlobalOffset(0, flawed("unknown global") ? "probe.x" : "probe.a");
}

static void release(void) {
    if (standin_release_counter) ++*standin_release_counter;
}

EXPORT int32_t RVK_mod_scroll2D_MainLibraryExports(ExportRegistrar* registrar);
int32_t RVK_mod_scroll2D_MainLibraryExports(ExportRegistrar* registrar) {
    const ConstantRow constants[] = {{"seven", 7}, {"minus_one", -1}, {0, 0}};
    const FunctionRow functions[] = {
        {"count_calls()", "I", 0, count_calls},
        {flawed("bad signature") ? "odd(I,S)" : "even(I,I)", "I", 0, count_calls},
        {0, 0, 0, 0}};
    const HookRow hooks[] = {{1, init}, {flawed("bad hook") ? 5 : 4, release}, {0, 0}};
    registrar->RegisterConstants(constants);
    if (flawed("twice")) registrar->RegisterConstants(constants);
    registrar->RegisterGlobals(flawed("bad globals") ? "struct probe int a = ; end"
                                                     : "struct probe int a; end");
    registrar->RegisterFunctions(functions);
    registrar->RegisterHooks(hooks);
    runtime = registrar->GetRuntime();
    if (flawed("early call")) runtime->Graphics->NewBlit();
    return flawed("refuses") ? 0 : 1;
}
