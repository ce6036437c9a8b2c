/*
 * For hosts: tells by name which slot of their records was left null, before the module calls it.
 *
 * The module itself makes no such test. Both functions read the records and nothing else; C99 and C++11 or
 * later.
 */
#ifndef RVK_MOD_SCROLL2D_HOST_CHECK_H
#define RVK_MOD_SCROLL2D_HOST_CHECK_H

#include "host_records.h"

#define RVK_REQUIRE(record, type, slot) \
    if (!(record)->slot) return #type "." #slot

/* To be asked before registration. "ExportRegistrar.GetRuntime" or the like: the first slot that is null, or
 * the record; null when there is none. */
static inline const char* rvk_missing_registrar_slot(const ExportRegistrar* registrar) {
    if (!registrar) return "ExportRegistrar";
    RVK_REQUIRE(registrar, ExportRegistrar, RegisterConstants);
    RVK_REQUIRE(registrar, ExportRegistrar, RegisterGlobals);
    RVK_REQUIRE(registrar, ExportRegistrar, RegisterFunctions);
    RVK_REQUIRE(registrar, ExportRegistrar, RegisterHooks);
    RVK_REQUIRE(registrar, ExportRegistrar, GetRuntime);
    return NULL;
}

/* Of rvk_missing_slot() below. */
static inline const char* rvk_missing_graphics_slot(const Graphics2DInterface* graphics, int32_t sprites) {
    RVK_REQUIRE(graphics, Graphics2DInterface, Video);
    RVK_REQUIRE(graphics, Graphics2DInterface, ScreenMap);
    RVK_REQUIRE(graphics, Graphics2DInterface, Regions);
    RVK_REQUIRE(graphics, Graphics2DInterface, CreateBlitList);
    RVK_REQUIRE(graphics, Graphics2DInterface, SelectBlitList);
    RVK_REQUIRE(graphics, Graphics2DInterface, NewBlit);
    RVK_REQUIRE(graphics, Graphics2DInterface, SortBlitList);
    RVK_REQUIRE(graphics, Graphics2DInterface, ClearBlitList);
    RVK_REQUIRE(graphics, Graphics2DInterface, GetBlitList);
    RVK_REQUIRE(graphics, Graphics2DInterface, BlitListCount);
    RVK_REQUIRE(graphics, Graphics2DInterface, GetFile);
    RVK_REQUIRE(graphics, Graphics2DInterface, FileCount);
    RVK_REQUIRE(graphics, Graphics2DInterface, SystemGraphCount);
    RVK_REQUIRE(graphics, Graphics2DInterface, RegionCount);
    RVK_REQUIRE(graphics, Graphics2DInterface, GetMap);
    RVK_REQUIRE(graphics, Graphics2DInterface, RegionDefined);
    if (!sprites) return NULL;
    RVK_REQUIRE(graphics, Graphics2DInterface, BlitSprite);
    RVK_REQUIRE(graphics, Graphics2DInterface, BlitSpriteScaled);
    RVK_REQUIRE(graphics, Graphics2DInterface, BlitSpriteRotated);
    RVK_REQUIRE(graphics, Graphics2DInterface, BlitSpriteRotatedScaled);
    RVK_REQUIRE(graphics, Graphics2DInterface, BlitSpriteGeneral);
    RVK_REQUIRE(graphics, Graphics2DInterface, BlitSpriteRotatedGeneral);
    return NULL;
}

/* To be asked before the init hook. Looks through the runtime and all that it leads to: the first slot that
 * is null, null when there is none. sprites: nonzero when there are going to be processes of type c_scroll,
 * which need the six sprite routines as well. */
static inline const char* rvk_missing_slot(const HostRuntime* runtime, int32_t sprites) {
    if (!runtime) return "HostRuntime";
    RVK_REQUIRE(runtime, HostRuntime, GlobalData);
    RVK_REQUIRE(runtime, HostRuntime, Processes);
    RVK_REQUIRE(runtime->Processes, ProcessServices, FirstProcessOfType);
    RVK_REQUIRE(runtime->Processes, ProcessServices, ProcessExists);
    RVK_REQUIRE(runtime, HostRuntime, ParamCount);
    RVK_REQUIRE(runtime, HostRuntime, PopInt);
    RVK_REQUIRE(runtime, HostRuntime, ReturnInt);
    RVK_REQUIRE(runtime, HostRuntime, RaiseError);
    RVK_REQUIRE(runtime, HostRuntime, GlobalOffset);
    RVK_REQUIRE(runtime, HostRuntime, DeleteProcess);
    RVK_REQUIRE(runtime, HostRuntime, FrameState);
    RVK_REQUIRE(runtime->FrameState, FrameState, suspend_flag);
    RVK_REQUIRE(runtime, HostRuntime, Graphics);
    return rvk_missing_graphics_slot(runtime->Graphics, sprites);
}

#undef RVK_REQUIRE

#endif
