/*
 * The records through which a host and RVK_mod_scroll2D meet.
 *
 * Host and module are built separately and share these layouts at run time, so each record is a format:
 * little-endian 32-bit words, word i at byte 4*i, pointers 32 bits wide, every function a plain C function
 * with 32-bit arguments. The words called reserved_N, from word N on, belong to the host, and so do the
 * reserved_byte_N: the module neither reads nor writes them. The asserts under each record hold the layout.
 *
 * C99 and C++11 or later, 32-bit targets only. This header holds declarations and nothing else.
 *
 * Ownership: a record is the host's, and the module borrows it and never frees, unless the line above says
 * that it is the module's. A field is written by whom the record belongs to; in the host's records the module
 * writes those whose comment begins with "written" or with S, P or L, and those that are "also written".
 * Threads: one, the host's.
 *
 * Laid out by hand: a line of a record is one of its words or a gap between them. tools/records.py reads
 * them.
 */
/* clang-format off */
#ifndef RVK_MOD_SCROLL2D_HOST_RECORDS_H
#define RVK_MOD_SCROLL2D_HOST_RECORDS_H

#ifdef __cplusplus
#include <cstddef>
#include <cstdint>
extern "C" {
#else
#include <stddef.h>
#include <stdint.h>
#endif

/* The module that this header belongs to. The first number changes when a host must. */
#define RVK_MOD_SCROLL2D_VERSION_MAJOR 1
#define RVK_MOD_SCROLL2D_VERSION_MINOR 0
#define RVK_MOD_SCROLL2D_VERSION_PATCH 0
#define RVK_MOD_SCROLL2D_VERSION "1.0.0"

/* Holds a field to its word, or to its byte where it is smaller than a word. Where the target is wrong, that
 * is the only thing to be said: the asserts would all fail.
 */
#if UINTPTR_MAX != 0xffffffff
#error "RVK_mod_scroll2D is for targets with pointers of 4 bytes: compile with -m32"
#define RVK_LAYOUT(condition) struct rvk_wrong_target
#elif defined(__cplusplus)
#define RVK_LAYOUT(condition) static_assert(condition, #condition)
#elif defined(__STDC_VERSION__) && __STDC_VERSION__ >= 201112L
#define RVK_LAYOUT(condition) _Static_assert(condition, #condition)
#else
#define RVK_PASTE_(a, b) a##b
#define RVK_PASTE(a, b) RVK_PASTE_(a, b)
#define RVK_LAYOUT(condition) typedef char RVK_PASTE(rvk_layout_, __LINE__)[(condition) ? 1 : -1]
#endif
#define RVK_AT_BYTE(record, field, byte) RVK_LAYOUT(offsetof(record, field) == (byte))
#define RVK_AT_WORD(record, field, word) RVK_AT_BYTE(record, field, 4 * (word))

RVK_LAYOUT(sizeof(void*) == 4);

/* ---- Maps, regions, points ---------------------------------------------------------------------------- */

/* A position in pixels. */
typedef struct __RVKPoint2D__ {
    int32_t x;
    int32_t y;
} __RVKPoint2D__;
RVK_AT_WORD(__RVKPoint2D__, x, 0);
RVK_AT_WORD(__RVKPoint2D__, y, 1);
RVK_LAYOUT(sizeof(__RVKPoint2D__) == 8);

/* A screen region in pixels, inclusive on all four edges. Both x come before both y. */
typedef struct __RVKRegion__ {
    int32_t x;  /* left */
    int32_t x2; /* right, inclusive */
    int32_t y;  /* top */
    int32_t y2; /* bottom, inclusive */
} __RVKRegion__;
RVK_AT_WORD(__RVKRegion__, x, 0);
RVK_AT_WORD(__RVKRegion__, x2, 1);
RVK_AT_WORD(__RVKRegion__, y, 2);
RVK_AT_WORD(__RVKRegion__, y2, 3);
RVK_LAYOUT(sizeof(__RVKRegion__) == 16);

/* A bitmap: a map, the screen, a destination. Rows are packed: `width` is the row length too. */
typedef struct MapRecord {
    uint32_t reserved_0;
    int32_t  width;                /* pixels */
    int32_t  height;               /* rows */
    uint32_t reserved_3[4];
    void*    pixels;               /* pixel (0,0); row after row at the depth of the video mode */
    uint8_t  alpha_flag;           /* nonzero: byte 3 of each 32-bit pixel is its opacity */
    uint8_t  reserved_byte_33;     /* two gaps: compilers fear that an array of bytes aliases the pixels */
    uint16_t reserved_byte_34;
    int32_t  cpoint_count;         /* control points */
    uint32_t reserved_10;
    const __RVKPoint2D__* cpoints; /* point 0 is the reference point: where a scroll starts */
} MapRecord;
RVK_AT_WORD(MapRecord, width, 1);
RVK_AT_WORD(MapRecord, height, 2);
RVK_AT_WORD(MapRecord, pixels, 7);
RVK_AT_WORD(MapRecord, alpha_flag, 8);
RVK_AT_WORD(MapRecord, cpoint_count, 9);
RVK_AT_WORD(MapRecord, cpoints, 11);

/* A map's place in its file. */
typedef struct MapEntry {
    int32_t    word0;           /* nonzero: a process may be drawn with this map */
    uint32_t   reserved_1[130];
    MapRecord* bitmap;          /* null: the map has no pixels */
} MapEntry;
RVK_AT_WORD(MapEntry, word0, 0);
RVK_AT_WORD(MapEntry, bitmap, 131);

/* A file: a numbered package of maps. */
typedef struct FileRecord {
    uint32_t reserved_0;
    int32_t  word1;      /* nonzero: processes may be drawn from this file */
    int32_t  word2;      /* nonzero: the file holds something, a scroll may start from it */
} FileRecord;
RVK_AT_WORD(FileRecord, word1, 1);
RVK_AT_WORD(FileRecord, word2, 2);

/* The video mode. */
typedef struct VideoInfo {
    uint32_t reserved_0[4];
    int32_t  bits_per_pixel; /* 8, 16 or 32; any other value is treated as 8 */
    uint32_t reserved_5[3];
    uint8_t  reset_flag;     /* nonzero at an update: every scroll stops */
} VideoInfo;
RVK_AT_WORD(VideoInfo, bits_per_pixel, 4);
RVK_AT_BYTE(VideoInfo, reset_flag, 32);

/* ---- Processes ----------------------------------------------------------------------------------------- */

/* A process's local data. The id of a process is the address of this block. */
typedef struct ProcessLocals {
    uint32_t       reserved_0[4];
    int32_t        status;          /* drawn when 2, or 4 and above */
    uint32_t       reserved_5[4];
    int32_t        scroll_mark;     /* written 1 by the sprite pass once it has handled the process */
    uint32_t       reserved_10[16];
    int32_t        scroll_mask;     /* bit i: shown in scroll i; 0: in every scroll */
    int32_t        file;            /* file of the graphic */
    int32_t        graph;           /* map code of the graphic; also written, from the graph table */
    const int32_t* graph_table;     /* [0] count 1-256, then the codes, negative = mirrored; null: none */
    int32_t        x;               /* world position, 1/resolution pixel when resolution > 0 */
    int32_t        y;
    int32_t        z;               /* depth */
    int32_t        word33;          /* drawn only when greater than 0 */
    int32_t        region;          /* clip region, world coordinates */
    int32_t        resolution;      /* divisor of x and y when greater than 0 */
    uint32_t       reserved_36[2];
    int32_t        word38;          /* copied */
    int32_t        angle;           /* thousandths of a degree; also written: 0-359999 with a graph table */
    int32_t        size;            /* per cent, 100 = unscaled */
    int32_t        size_x;          /* per cent */
    int32_t        size_y;          /* per cent */
    int32_t        word43;          /* copied; nonzero selects the general sprite routines */
    int32_t        word44;          /* copied; nonzero selects the general sprite routines */
    int32_t        flags;           /* bit 0 mirrored; also written, from the graph table */
    int32_t        word46;          /* copied */
    int32_t        word47;          /* copied */
    int32_t        word48;          /* copied */
    int32_t        word49;          /* copied */
} ProcessLocals;
RVK_AT_WORD(ProcessLocals, status, 4);
RVK_AT_WORD(ProcessLocals, scroll_mark, 9);
RVK_AT_WORD(ProcessLocals, scroll_mask, 26);
RVK_AT_WORD(ProcessLocals, file, 27);
RVK_AT_WORD(ProcessLocals, graph, 28);
RVK_AT_WORD(ProcessLocals, graph_table, 29);
RVK_AT_WORD(ProcessLocals, x, 30);
RVK_AT_WORD(ProcessLocals, y, 31);
RVK_AT_WORD(ProcessLocals, z, 32);
RVK_AT_WORD(ProcessLocals, word33, 33);
RVK_AT_WORD(ProcessLocals, region, 34);
RVK_AT_WORD(ProcessLocals, resolution, 35);
RVK_AT_WORD(ProcessLocals, word38, 38);
RVK_AT_WORD(ProcessLocals, angle, 39);
RVK_AT_WORD(ProcessLocals, size, 40);
RVK_AT_WORD(ProcessLocals, size_x, 41);
RVK_AT_WORD(ProcessLocals, size_y, 42);
RVK_AT_WORD(ProcessLocals, word43, 43);
RVK_AT_WORD(ProcessLocals, word44, 44);
RVK_AT_WORD(ProcessLocals, flags, 45);
RVK_AT_WORD(ProcessLocals, word46, 46);
RVK_AT_WORD(ProcessLocals, word47, 47);
RVK_AT_WORD(ProcessLocals, word48, 48);
RVK_AT_WORD(ProcessLocals, word49, 49);

/* A process in one of the host's lists. */
typedef struct ProcessNode {
    uint32_t            reserved_0[2];
    ProcessLocals*      data;
    uint32_t            reserved_3[12];
    struct ProcessNode* next;           /* next node of the same list, or null */
} ProcessNode;
RVK_AT_WORD(ProcessNode, data, 2);
RVK_AT_WORD(ProcessNode, next, 15);

typedef struct ProcessServices {
    uint32_t reserved_0;
    /* Head of the list of processes of a coordinate type, or null. The module asks for type 1, c_scroll. */
    ProcessNode* (*FirstProcessOfType)(int32_t coordinate_type);
    uint32_t reserved_2[5];
    /* Nonzero when a live process has this id. [before a camera is read] */
    int32_t (*ProcessExists)(int32_t process_id);
} ProcessServices;
RVK_AT_WORD(ProcessServices, FirstProcessOfType, 1);
RVK_AT_WORD(ProcessServices, ProcessExists, 7);

/* ---- Blit lists ---------------------------------------------------------------------------------------- */

struct __RVKBlit2D__;

/* Draws one blit entry. The host calls it with the entry itself. */
typedef int32_t (*BlitRoutine)(struct __RVKBlit2D__* blit);

/* One entry of a blit list. S: written for a scroll entry, P: for a process entry, L: for a layer entry. */
typedef struct __RVKBlit2D__ {
    int32_t        id;             /* S   the scroll, 0-9; read back when the entry is drawn */
    ProcessLocals* owner;          /* S   null; P the process */
    int32_t        drawn;          /* S   set to 1 once the scroll has been drawn */
    int32_t        x;              /* S   bounding box on the destination, inclusive edges, pixels */
    int32_t        x2;             /* S */
    int32_t        y;              /* S */
    int32_t        y2;             /* S */
    uint32_t       reserved_7[4];
    const int32_t* graph_table;    /* P   the process's graph table, or null */
    int32_t        pos_x;          /* P   position on the destination, pixels */
    int32_t        pos_y;          /* P */
    int32_t        z;              /* SPL depth key */
    uint32_t       reserved_15;
    int32_t        region;         /* P   the process's region number */
    int32_t        resolution;     /* P   the process's resolution */
    uint32_t       reserved_18[2];
    int32_t        word20;         /* P   the process's word 38 */
    int32_t        angle;          /* P   thousandths of a degree, between -359999 and 359999 */
    int32_t        size;           /* P   per cent */
    int32_t        size_x;         /* P   per cent */
    int32_t        size_y;         /* P   per cent */
    int32_t        word25;         /* P   the process's word 43 */
    int32_t        word26;         /* P   the process's word 44 */
    int32_t        flags;          /* P   bit 0 mirrored */
    int32_t        word28;         /* P   the process's word 46 */
    int32_t        word29;         /* P   the process's word 47 */
    int32_t        word30;         /* P   the process's word 48 */
    int32_t        word31;         /* P   the process's word 49 */
    uint32_t       reserved_32[4];
    int32_t        has_clip;       /* S   0; P 1: the next four words hold a clip rectangle */
    int32_t        clip_x;         /* P   destination pixels, inclusive edges */
    int32_t        clip_x2;        /* P */
    int32_t        clip_y;         /* P */
    int32_t        clip_y2;        /* P */
    uint32_t       reserved_41;
    MapRecord*     bitmap;         /* P   the graphic */
    MapRecord*     target;         /* P   the bitmap to draw into */
    BlitRoutine    draw;           /* SPL the routine that draws this entry */
} __RVKBlit2D__;
RVK_AT_WORD(__RVKBlit2D__, id, 0);
RVK_AT_WORD(__RVKBlit2D__, owner, 1);
RVK_AT_WORD(__RVKBlit2D__, drawn, 2);
RVK_AT_WORD(__RVKBlit2D__, x, 3);
RVK_AT_WORD(__RVKBlit2D__, x2, 4);
RVK_AT_WORD(__RVKBlit2D__, y, 5);
RVK_AT_WORD(__RVKBlit2D__, y2, 6);
RVK_AT_WORD(__RVKBlit2D__, graph_table, 11);
RVK_AT_WORD(__RVKBlit2D__, pos_x, 12);
RVK_AT_WORD(__RVKBlit2D__, pos_y, 13);
RVK_AT_WORD(__RVKBlit2D__, z, 14);
RVK_AT_WORD(__RVKBlit2D__, region, 16);
RVK_AT_WORD(__RVKBlit2D__, resolution, 17);
RVK_AT_WORD(__RVKBlit2D__, word20, 20);
RVK_AT_WORD(__RVKBlit2D__, angle, 21);
RVK_AT_WORD(__RVKBlit2D__, size, 22);
RVK_AT_WORD(__RVKBlit2D__, size_x, 23);
RVK_AT_WORD(__RVKBlit2D__, size_y, 24);
RVK_AT_WORD(__RVKBlit2D__, word25, 25);
RVK_AT_WORD(__RVKBlit2D__, word26, 26);
RVK_AT_WORD(__RVKBlit2D__, flags, 27);
RVK_AT_WORD(__RVKBlit2D__, word28, 28);
RVK_AT_WORD(__RVKBlit2D__, word29, 29);
RVK_AT_WORD(__RVKBlit2D__, word30, 30);
RVK_AT_WORD(__RVKBlit2D__, word31, 31);
RVK_AT_WORD(__RVKBlit2D__, has_clip, 36);
RVK_AT_WORD(__RVKBlit2D__, clip_x, 37);
RVK_AT_WORD(__RVKBlit2D__, clip_x2, 38);
RVK_AT_WORD(__RVKBlit2D__, clip_y, 39);
RVK_AT_WORD(__RVKBlit2D__, clip_y2, 40);
RVK_AT_WORD(__RVKBlit2D__, bitmap, 42);
RVK_AT_WORD(__RVKBlit2D__, target, 43);
RVK_AT_WORD(__RVKBlit2D__, draw, 44);

typedef struct BlitList {
    uint32_t        reserved_0[6];
    __RVKBlit2D__** zorder;        /* the list's entries in drawing order, once sorted */
} BlitList;
RVK_AT_WORD(BlitList, zorder, 6);

/* ---- The module's services for the graphics module ----------------------------------------------------- */

/* The module's. Scroll numbers are 0-9. A mask is a process's scroll_mask: 0 means every scroll, bit i
 * scroll i. Results are 1 (success, yes) or 0 (failure, no). */
typedef struct ScrollSystemInterface {
    /* Draws the scroll of a scroll entry. [while the host draws its main list] */
    int32_t (*BlitScroll2D)(__RVKBlit2D__* blit);
    /* The world rectangle (x, y, w x h) in destination coordinates, not clipped. */
    int32_t (*GetScrollRegion)(int32_t scroll, int32_t mask, int32_t x, int32_t y, int32_t w, int32_t h,
                               __RVKRegion__* out);
    /* What to add to a world position to get a destination position. */
    int32_t (*GetScrollPoint)(int32_t scroll, int32_t mask, __RVKPoint2D__* out);
    /* The positions of the planes; either output may be null, not both. */
    int32_t (*GetScrollPos)(int32_t scroll, int32_t mask, __RVKPoint2D__* plane1, __RVKPoint2D__* plane2);
    /* Whether a process with this mask is shown in this running scroll. */
    int32_t (*GetProcessInScroll)(int32_t scroll, int32_t mask);
    /* Whether the mask names scrolls, but not this one. */
    int32_t (*GetProcessOutScroll)(int32_t scroll, int32_t mask);
    /* Stops one scroll; ignores a number out of range. */
    void (*StopScroll)(int32_t scroll);
    /* Stops all ten. */
    void (*StopAllScroll)(void);
} ScrollSystemInterface;
RVK_AT_WORD(ScrollSystemInterface, BlitScroll2D, 0);
RVK_AT_WORD(ScrollSystemInterface, GetScrollRegion, 1);
RVK_AT_WORD(ScrollSystemInterface, GetScrollPoint, 2);
RVK_AT_WORD(ScrollSystemInterface, GetScrollPos, 3);
RVK_AT_WORD(ScrollSystemInterface, GetProcessInScroll, 4);
RVK_AT_WORD(ScrollSystemInterface, GetProcessOutScroll, 5);
RVK_AT_WORD(ScrollSystemInterface, StopScroll, 6);
RVK_AT_WORD(ScrollSystemInterface, StopAllScroll, 7);
RVK_LAYOUT(sizeof(ScrollSystemInterface) == 32);

/* ---- The host's runtime -------------------------------------------------------------------------------- */

/* The host's 2-D graphics module. Its data words are never null while this module is loaded. */
typedef struct Graphics2DInterface {
    VideoInfo*     Video;
    uint32_t       reserved_1;
    MapRecord*     ScreenMap;                /* read again at an update */
    uint32_t       reserved_3;
    __RVKRegion__* Regions;                  /* one entry for every number below RegionCount() */
    uint32_t       reserved_5[14];
    /* Sprite routines: stored as the draw routine of process entries. */
    BlitRoutine    BlitSprite;               /* unrotated, 100 %, words 43 and 44 both 0 */
    BlitRoutine    BlitSpriteScaled;         /* unrotated, scaled */
    BlitRoutine    BlitSpriteRotated;        /* rotated, 100 % */
    BlitRoutine    BlitSpriteRotatedScaled;  /* rotated and scaled */
    BlitRoutine    BlitSpriteGeneral;        /* unrotated, word 43 or 44 nonzero */
    BlitRoutine    BlitSpriteRotatedGeneral; /* rotated, word 43 or 44 nonzero */
    uint32_t       reserved_25[4];
    /* Called at each init, with 256 twice. */
    void*          (*CreateBlitList)(const char* name, int32_t size, int32_t growth);
    int32_t        (*SelectBlitList)(void* list);          /* null: the main list. Nonzero on success */
    __RVKBlit2D__* (*NewBlit)(void);                       /* appended to the current list */
    uint32_t       reserved_32;
    int32_t        (*SortBlitList)(void);                  /* the current list, into drawing order */
    int32_t        (*ClearBlitList)(void);                 /* empties the current list */
    BlitList*      (*GetBlitList)(void);                   /* the current list */
    int32_t        (*BlitListCount)(void);                 /* entries in the current list */
    uint32_t       reserved_37[3];
    FileRecord*    (*GetFile)(int32_t file);               /* null: none */
    int32_t        (*FileCount)(void);                     /* file numbers are below it */
    int32_t        (*SystemGraphCount)(void);              /* limit of graph numbers in file 0; else 1000 */
    int32_t        (*RegionCount)(void);                   /* region numbers are below it */
    MapEntry*      (*GetMap)(int32_t file, int32_t graph); /* null: none */
    int32_t        (*RegionDefined)(int32_t region);       /* nonzero: the region has been defined */
    uint32_t       reserved_46[39];
    const ScrollSystemInterface* ScrollSystem;             /* written by this module at init */
} Graphics2DInterface;
RVK_AT_WORD(Graphics2DInterface, Video, 0);
RVK_AT_WORD(Graphics2DInterface, ScreenMap, 2);
RVK_AT_WORD(Graphics2DInterface, Regions, 4);
RVK_AT_WORD(Graphics2DInterface, BlitSprite, 19);
RVK_AT_WORD(Graphics2DInterface, BlitSpriteScaled, 20);
RVK_AT_WORD(Graphics2DInterface, BlitSpriteRotated, 21);
RVK_AT_WORD(Graphics2DInterface, BlitSpriteRotatedScaled, 22);
RVK_AT_WORD(Graphics2DInterface, BlitSpriteGeneral, 23);
RVK_AT_WORD(Graphics2DInterface, BlitSpriteRotatedGeneral, 24);
RVK_AT_WORD(Graphics2DInterface, CreateBlitList, 29);
RVK_AT_WORD(Graphics2DInterface, SelectBlitList, 30);
RVK_AT_WORD(Graphics2DInterface, NewBlit, 31);
RVK_AT_WORD(Graphics2DInterface, SortBlitList, 33);
RVK_AT_WORD(Graphics2DInterface, ClearBlitList, 34);
RVK_AT_WORD(Graphics2DInterface, GetBlitList, 35);
RVK_AT_WORD(Graphics2DInterface, BlitListCount, 36);
RVK_AT_WORD(Graphics2DInterface, GetFile, 40);
RVK_AT_WORD(Graphics2DInterface, FileCount, 41);
RVK_AT_WORD(Graphics2DInterface, SystemGraphCount, 42);
RVK_AT_WORD(Graphics2DInterface, RegionCount, 43);
RVK_AT_WORD(Graphics2DInterface, GetMap, 44);
RVK_AT_WORD(Graphics2DInterface, RegionDefined, 45);
RVK_AT_WORD(Graphics2DInterface, ScrollSystem, 85);

typedef struct FrameState {
    uint32_t       reserved_0[7];
    const uint8_t* suspend_flag;  /* while that byte is nonzero, no scroll is scheduled */
} FrameState;
RVK_AT_WORD(FrameState, suspend_flag, 7);

typedef struct HostRuntime {
    uint8_t*             GlobalData;                  /* the script's globals; may move, read at every use */
    uint32_t             reserved_1[2];
    ProcessServices*     Processes;
    uint32_t             reserved_4[5];
    int32_t              (*ParamCount)(void);         /* arguments of the script call being served */
    uint32_t             reserved_10[4];
    int32_t              (*PopInt)(void);             /* the next argument, the last one first */
    uint32_t             reserved_15[37];
    int32_t              (*ReturnInt)(int32_t value); /* sets the result of the script call */
    uint32_t             reserved_53[16];
    /* Reports a script error and returns. argument is 1-based, 0 means none in particular. */
    int32_t              (*RaiseError)(int32_t code, const char* function, int32_t zero, int32_t argument,
                                       int32_t value);
    uint32_t             reserved_70[2];
    /* The byte offset of a global; asked at each init, for "scroll.camera". */
    int32_t              (*GlobalOffset)(int32_t zero, const char* name);
    uint32_t             reserved_73[5];
    /* Ends a process (the second argument is 2); the node at which a walk of its list goes on, or null. */
    ProcessNode*         (*DeleteProcess)(ProcessLocals* process, int32_t two);
    struct FrameState*   FrameState;
    Graphics2DInterface* Graphics;
} HostRuntime;
RVK_AT_WORD(HostRuntime, GlobalData, 0);
RVK_AT_WORD(HostRuntime, Processes, 3);
RVK_AT_WORD(HostRuntime, ParamCount, 9);
RVK_AT_WORD(HostRuntime, PopInt, 14);
RVK_AT_WORD(HostRuntime, ReturnInt, 52);
RVK_AT_WORD(HostRuntime, RaiseError, 69);
RVK_AT_WORD(HostRuntime, GlobalOffset, 72);
RVK_AT_WORD(HostRuntime, DeleteProcess, 78);
RVK_AT_WORD(HostRuntime, FrameState, 79);
RVK_AT_WORD(HostRuntime, Graphics, 80);

/* ---- Registration -------------------------------------------------------------------------------------- */

/* The three tables are copied by the host during the call; each ends with a row of zeros. */

/* The module's. A name for scripts. */
typedef struct ConstantRow {
    const char* name;
    int32_t     value;
} ConstantRow;
RVK_AT_WORD(ConstantRow, name, 0);
RVK_AT_WORD(ConstantRow, value, 1);
RVK_LAYOUT(sizeof(ConstantRow) == 8);

/* The module's. A function for scripts. */
typedef struct FunctionRow {
    const char* signature;       /* "scroll_move(I)": the name and a type per argument */
    const char* return_type;     /* "I" */
    int32_t     zero;
    int32_t     (*handler)(void);
} FunctionRow;
RVK_AT_WORD(FunctionRow, signature, 0);
RVK_AT_WORD(FunctionRow, return_type, 1);
RVK_AT_WORD(FunctionRow, zero, 2);
RVK_AT_WORD(FunctionRow, handler, 3);
RVK_LAYOUT(sizeof(FunctionRow) == 16);

/* The module's. id: 1 init, 2 frame, 3 update (after a change of video mode), 4 release. */
typedef struct HookRow {
    int32_t id;
    void    (*function)(void);
} HookRow;
RVK_AT_WORD(HookRow, id, 0);
RVK_AT_WORD(HookRow, function, 1);
RVK_LAYOUT(sizeof(HookRow) == 8);

/* Passed to the module's registration. The five slots are called once each, in this order. */
typedef struct ExportRegistrar {
    void         (*RegisterConstants)(const ConstantRow* table);
    uint32_t     reserved_1[3];
    void         (*RegisterGlobals)(const char* declarations);
    uint32_t     reserved_5;
    void         (*RegisterFunctions)(const FunctionRow* table);
    void         (*RegisterHooks)(const HookRow* table);
    uint32_t     reserved_8;
    HostRuntime* (*GetRuntime)(void); /* valid until the module is unloaded */
} ExportRegistrar;
RVK_AT_WORD(ExportRegistrar, RegisterConstants, 0);
RVK_AT_WORD(ExportRegistrar, RegisterGlobals, 4);
RVK_AT_WORD(ExportRegistrar, RegisterFunctions, 6);
RVK_AT_WORD(ExportRegistrar, RegisterHooks, 7);
RVK_AT_WORD(ExportRegistrar, GetRuntime, 9);

#ifdef __cplusplus
}
#endif

#endif
