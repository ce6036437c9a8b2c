/*
 * A stand-in for the module, with which the host is tested: it registers, calls every slot that the host
 * offers and, on demand, breaks each rule that the host watches over. STANDIN_FLAW picks a flaw in its
 * registration.
 */
#include "module/contract/host_records.h"

#define EXPORT __attribute__((visibility("default")))

enum { NO_FLAW, NEEDS_MORE, BAD_GLOBALS, BAD_SIGNATURE, UNKNOWN_GLOBAL, EARLY_CALL, TWICE };
#define NO_EXPORTS 7
#ifndef STANDIN_FLAW
#define STANDIN_FLAW NO_FLAW
#endif

#if STANDIN_FLAW != NO_EXPORTS

static HostRuntime* runtime;
static void* list;
static int32_t probe_offset;
static int32_t leave_list_selected;
static ScrollSystemInterface services;

/* Where the host can see what happened, even after the module is closed. */
EXPORT int32_t* standin_release_counter;
EXPORT int32_t standin_calls;

static int32_t* probe(int32_t index) {
    return (int32_t*)(void*)(runtime->GlobalData + probe_offset) + 2 * index;
}

static int32_t sum(void) {
    int32_t total = 0;
    int32_t weight = 1;
    for (int32_t left = runtime->ParamCount(); left > 0; --left, weight *= 10)
        total += weight * runtime->PopInt();
    return runtime->ReturnInt(total);
}

static int32_t fail(void) {
    const int32_t value = runtime->PopInt();
    runtime->RaiseError(107, "FAIL", 0, 1, value);
    return runtime->ReturnInt(INT32_MIN);
}

/* Each breach of the calling contract: 1 pops too much, 2 leaves an argument, 3 sets no result, 4 returns the
 * value itself, 5 deletes a process that is not there, 6 selects a list that is not one. */
static int32_t misbehave(void) {
    const int32_t what = runtime->PopInt();
    if (what != 2) runtime->PopInt();
    if (what == 1) runtime->PopInt();
    if (what == 3) return 0;
    if (what == 5) runtime->DeleteProcess((ProcessLocals*)(void*)&services, 2);
    if (what == 6) runtime->Graphics->SelectBlitList(&services);
    return what == 4 ? (runtime->ReturnInt(7), 7) : runtime->ReturnInt(7);
}

static int32_t set_probe(void) {
    const int32_t value = runtime->PopInt();
    const int32_t index = runtime->PopInt();
    probe(index)[1] = value;
    return runtime->ReturnInt(probe(index)[0]);
}

static int32_t count_calls(void) {
    return runtime->ReturnInt(++standin_calls);
}

/* Deletes the scroll-bound processes whose mask is the argument, and returns how many are left. */
static int32_t delete_masked(void) {
    const int32_t mask = runtime->PopInt();
    int32_t left = 0;
    ProcessNode* node = runtime->Processes->FirstProcessOfType(1);
    while (node) {
        if (node->data->scroll_mask == mask) {
            node = runtime->DeleteProcess(node->data, 2);
        } else {
            ++left;
            node = node->next;
        }
    }
    return runtime->ReturnInt(left);
}

static int32_t leave_selected(void) {
    leave_list_selected = runtime->PopInt();
    return runtime->ReturnInt(0);
}

/* Draws the scroll-bound processes through a list of its own, while the host walks its main list. */
static int32_t draw_processes(__RVKBlit2D__* blit) {
    const Graphics2DInterface* g = runtime->Graphics;
    if (!g->SelectBlitList(list)) return 0;
    for (ProcessNode* node = runtime->Processes->FirstProcessOfType(1); node; node = node->next) {
        const MapEntry* map = g->GetMap(node->data->file, node->data->graph);
        if (!map) continue;
        __RVKBlit2D__* entry = g->NewBlit();
        entry->pos_x = node->data->x;
        entry->pos_y = node->data->y;
        entry->z = node->data->z;
        entry->flags = 0;
        entry->has_clip = 0;
        entry->bitmap = map->bitmap;
        entry->target = g->ScreenMap;
        entry->draw = g->BlitSprite;
    }
    g->SortBlitList();
    for (int32_t i = 0; i < g->BlitListCount(); ++i) {
        __RVKBlit2D__* entry = g->GetBlitList()->zorder[i];
        entry->draw(entry);
    }
    g->ClearBlitList();
    if (!leave_list_selected) g->SelectBlitList(0);
    blit->drawn = 1;
    return 1;
}

static void init(void) {
    runtime->Graphics->ScrollSystem = &services;
    list = runtime->Graphics->CreateBlitList("STANDIN", 256, 256);
    probe_offset = runtime->GlobalOffset(0, STANDIN_FLAW == UNKNOWN_GLOBAL ? "probe.x" : "probe.a");
}

static void frame(void) {
    if (*runtime->FrameState->suspend_flag) return;
    runtime->Graphics->SelectBlitList(0);
    __RVKBlit2D__* entry = runtime->Graphics->NewBlit();
    entry->id = 3;
    entry->z = 100;
    entry->draw = draw_processes;
}

/* Leaves what it saw in the last element: the screen's width, and the depth with the reset flag. */
static void update(void) {
    probe(2)[0] = runtime->Graphics->ScreenMap->width;
    probe(2)[1] = 10 * runtime->Graphics->Video->bits_per_pixel + runtime->Graphics->Video->reset_flag;
}

static void release(void) {
    if (standin_release_counter) ++*standin_release_counter;
}

EXPORT const char* RVK_mod_scroll2D_MainLibraryDependencies[] = {
    STANDIN_FLAW == NEEDS_MORE ? "RVK_mod_sound" : "RVK_mod_graphics2D", 0};

EXPORT int32_t RVK_mod_scroll2D_MainLibraryExports(ExportRegistrar* registrar);
int32_t RVK_mod_scroll2D_MainLibraryExports(ExportRegistrar* registrar) {
    const ConstantRow constants[] = {{"seven", 7}, {"minus_one", -1}, {0, 0}};
    const FunctionRow functions[] = {{"sum(I,I)", "I", 0, sum},
                                     {"sum(I,I,I)", "I", 0, sum},
                                     {"fail(I)", "I", 0, fail},
                                     {"misbehave(I,I)", "I", 0, misbehave},
                                     {"set_probe(I,I)", "I", 0, set_probe},
                                     {"count_calls()", "I", 0, count_calls},
                                     {"delete_masked(I)", "I", 0, delete_masked},
                                     {"leave_selected(I)", "I", 0, leave_selected},
                                     {STANDIN_FLAW == BAD_SIGNATURE ? "odd(I,S)" : "even(I)", "I", 0, fail},
                                     {0, 0, 0, 0}};
    const HookRow hooks[] = {{1, init}, {2, frame}, {3, update}, {4, release}, {0, 0}};
    registrar->RegisterConstants(constants);
    if (STANDIN_FLAW == TWICE) registrar->RegisterConstants(constants);
    registrar->RegisterGlobals(STANDIN_FLAW == BAD_GLOBALS
                                   ? "struct probe[3] int a = ; end"
                                   : "struct probe[3] int a  = 5;int b= -6; end\n struct lone int only;end ");
    registrar->RegisterFunctions(functions);
    registrar->RegisterHooks(hooks);
    runtime = registrar->GetRuntime();
    if (STANDIN_FLAW == EARLY_CALL) runtime->Graphics->NewBlit();
    return 1;
}

#endif
