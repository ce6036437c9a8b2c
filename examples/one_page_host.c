/*
 * A host of one page. It loads the scroll module, starts one scroll that repeats a small generated map without
 * end, moves it for sixty frames and writes what the screen then shows.
 *
 *     cc -m32 -std=c99 -I PREFIX/include one_page_host.c -ldl -o one_page_host
 *     ./one_page_host PREFIX/lib/rvk/RVK_mod_scroll2D.so picture.ppm
 *
 * For Windows with i686-w64-mingw32-gcc, without -m32 and -ldl; the module is then RVK_mod_scroll2D.dll.
 *
 * What goes wrong is said on standard error; the exit status is then 1, or 2 for a wrong command line.
 *
 * It has no interpreter, no processes and no files, so it fills only the slots that a scroll without sprites
 * reaches. The guide (host-authors.md) says what each slot must do in a full host; sprites_host.c goes on from here.
 */
#include <errno.h>
#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include <rvk/host_check.h>
#include <rvk/host_records.h>

/* clang-format off: a slot to a line keeps this to a page */

/* ---- The system's loader; that of Windows by the names that others have for theirs. */
#ifdef _WIN32
#define WIN32_LEAN_AND_MEAN
#include <windows.h>
enum { RTLD_NOW = 0, RTLD_LOCAL = 0 };
static void* dlopen(const char* path, int mode) { return (void)mode, (void*)LoadLibraryA(path); }
static void* dlsym(void* module, const char* name) {
    const FARPROC found = GetProcAddress((HMODULE)module, name);
    void* symbol = NULL;
    return memcpy(&symbol, &found, sizeof symbol), symbol;
}
static const char* dlerror(void) {
    static char reason[200] = "unknown reason";
    FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS | FORMAT_MESSAGE_MAX_WIDTH_MASK, NULL,
                   GetLastError(), 0, reason, sizeof reason, NULL);
    return reason;
}
#else
#include <dlfcn.h>
#endif

enum { screen_width = 320, screen_height = 200, map_width = 192, map_height = 160 };
/* The script global scroll[10]: its elements, and where some of their fields are. */
enum { scrolls = 10, fields = 15, field_camera = 0, field_x0 = 8, field_y0 = 9, field_z = 12 };

static const char* program = "one_page_host";

/* Says what failed; 0, so that it can be returned as a failure. */
static int failed(const char* what, ...) {
    va_list values;
    va_start(values, what);
    fprintf(stderr, "%s: ", program);
    vfprintf(stderr, what, values);
    fputc('\n', stderr);
    va_end(values);
    return 0;
}

/* ---- Data that the host owns and the module borrows. Pixels are 32 bits; here byte 0 is red. */
static uint32_t screen_pixels[screen_height][screen_width], map_pixels[map_height][map_width];
static MapRecord screen = {.width = screen_width, .height = screen_height, .pixels = screen_pixels};
static MapRecord map = {.width = map_width, .height = map_height, .pixels = map_pixels};
static MapEntry map_entry = {.word0 = 1, .bitmap = &map};
static FileRecord file = {.word1 = 1, .word2 = 1}; /* word 2: the file holds something */
static VideoInfo video = {.bits_per_pixel = 32};
static __RVKRegion__ regions[2] = {{0, screen_width - 1, 0, screen_height - 1}, {16, 303, 12, 187}};
static const uint8_t suspended = 0;
static FrameState frame_state = {.suspend_flag = &suspended};
static int32_t globals[scrolls][fields];

/* ---- Blit lists. An entry is zeroed when it is handed out: the module writes only the words it needs. */
enum { list_size = 256 };
static struct List {
    BlitList record;
    __RVKBlit2D__ entries[list_size], *order[list_size];
    int32_t count;
} main_list = {.record = {.zorder = main_list.order}}, module_list = {.record = {.zorder = module_list.order}};
static struct List* current = &main_list;

static void* CreateBlitList(const char* name, int32_t size, int32_t growth) {
    (void)name, (void)size, (void)growth;
    return &module_list;
}
static int32_t SelectBlitList(void* list) {
    current = list != NULL ? list : &main_list;
    return 1;
}
static __RVKBlit2D__* NewBlit(void) {
    if (current->count == list_size) return NULL; /* the module then leaves this entry out */
    __RVKBlit2D__* const entry = &current->entries[current->count];
    memset(entry, 0, sizeof *entry);
    return current->order[current->count++] = entry;
}
static int32_t SortBlitList(void) { /* a larger z lies deeper and comes first; equal ones keep their order */
    for (int32_t i = 1; i < current->count; ++i) {
        for (int32_t j = i; j > 0 && current->order[j - 1]->z < current->order[j]->z; --j) {
            __RVKBlit2D__* const deeper = current->order[j];
            current->order[j] = current->order[j - 1];
            current->order[j - 1] = deeper;
        }
    }
    return 1;
}
static int32_t ClearBlitList(void) { return current->count = 0; }
static BlitList* GetBlitList(void) { return &current->record; }
static int32_t BlitListCount(void) { return current->count; }

/* ---- Files, maps and regions: what the module asks about, it asks again at each use. */
static FileRecord* GetFile(int32_t number) { return number == 1 ? &file : NULL; }
static int32_t FileCount(void) { return 2; }
static int32_t SystemGraphCount(void) { return 1; }
static int32_t RegionCount(void) { return 2; }
static MapEntry* GetMap(int32_t number, int32_t graph) { return number == 1 && graph == 10 ? &map_entry : NULL; }
static int32_t RegionDefined(int32_t region) { return region == 0 || region == 1; }

static Graphics2DInterface graphics = {
    .Video = &video, .ScreenMap = &screen, .Regions = regions,
    .CreateBlitList = CreateBlitList, .SelectBlitList = SelectBlitList, .NewBlit = NewBlit,
    .SortBlitList = SortBlitList, .ClearBlitList = ClearBlitList, .GetBlitList = GetBlitList,
    .BlitListCount = BlitListCount, .GetFile = GetFile, .FileCount = FileCount,
    .SystemGraphCount = SystemGraphCount, .RegionCount = RegionCount, .GetMap = GetMap,
    .RegionDefined = RegionDefined,
};

/* ---- Processes: there are none, so no process is ever deleted either. */
static ProcessNode* FirstProcessOfType(int32_t type) { return (void)type, NULL; }
static int32_t ProcessExists(int32_t id) { return (void)id, 0; }
static ProcessNode* DeleteProcess(ProcessLocals* process, int32_t two) { return (void)process, (void)two, NULL; }
static ProcessServices processes = {.FirstProcessOfType = FirstProcessOfType, .ProcessExists = ProcessExists};

/* ---- Script calls: the arguments wait on a stack, so that the last one pops first. */
static const int32_t* arguments;
static int32_t argument_count, arguments_left, result;
static int32_t ParamCount(void) { return argument_count; }
static int32_t PopInt(void) { return arguments[--arguments_left]; }
static int32_t ReturnInt(int32_t value) { return result = value; }
static int32_t RaiseError(int32_t code, const char* function, int32_t zero, int32_t argument, int32_t value) {
    (void)zero;
    return failed("%s: %s (error %d, argument %d, value %d)", function,
                  code == 100 ? "no memory for the buffer of a plane" : "refused; the guide lists the errors",
                  (int)code, (int)argument, (int)value);
}
static int32_t GlobalOffset(int32_t zero, const char* name) {
    return (void)zero, (void)name, 0; /* "scroll.camera" is the first field of the only global */
}
static HostRuntime runtime = {
    .GlobalData = (uint8_t*)globals, .Processes = &processes, .ParamCount = ParamCount, .PopInt = PopInt,
    .ReturnInt = ReturnInt, .RaiseError = RaiseError, .GlobalOffset = GlobalOffset,
    .DeleteProcess = DeleteProcess, .FrameState = &frame_state, .Graphics = &graphics,
};

/* ---- Registration: the tables are gone after each call, so what is wanted of them is copied. */
static FunctionRow functions[16];
static int32_t function_count;
static void (*hooks[5])(void); /* by id: 1 init, 2 frame, 3 update, 4 release */

static void RegisterConstants(const ConstantRow* table) { (void)table; /* names for scripts; there are none */ }
static void RegisterGlobals(const char* text) { /* "struct scroll[10] int camera = 0;int ratio = 200; ..." */
    int32_t field = 0;
    for (text = strchr(text, '='); text != NULL && field < fields; text = strchr(text + 1, '='), ++field) {
        for (int32_t n = 0; n < scrolls; ++n) globals[n][field] = (int32_t)strtol(text + 1, NULL, 10);
    }
}
static void RegisterFunctions(const FunctionRow* row) {
    for (; row->signature != NULL && function_count < 16; ++row) functions[function_count++] = *row;
}
static void RegisterHooks(const HookRow* row) {
    for (; row->function != NULL; ++row) {
        if (row->id >= 1 && row->id <= 4) hooks[row->id] = row->function;
    }
}
static HostRuntime* GetRuntime(void) { return &runtime; }

static int load(const char* path) {
    static const ExportRegistrar registrar = {
        .RegisterConstants = RegisterConstants, .RegisterGlobals = RegisterGlobals,
        .RegisterFunctions = RegisterFunctions, .RegisterHooks = RegisterHooks, .GetRuntime = GetRuntime};
    int32_t (*exports)(const ExportRegistrar*) = NULL;
    if (strpbrk(path, "/\\") == NULL) /* dlopen would look among the system's libraries, and not here */
        return failed("%s: write a path with a slash, ./%s for a file in this folder", path, path);
    void* const module = dlopen(path, RTLD_NOW | RTLD_LOCAL);
    if (module == NULL) return failed("cannot load the module: %s", dlerror());
    void* const symbol = dlsym(module, "RVK_mod_scroll2D_MainLibraryExports");
    if (symbol == NULL) return failed("this is another library: %s", dlerror());
    memcpy(&exports, &symbol, sizeof exports); /* C has no cast from a data pointer to a function pointer */
    const char* missing = rvk_missing_registrar_slot(&registrar);
    if (missing != NULL) return failed("%s is null", missing);
    if (exports(&registrar) != 1) return failed("the module did not register itself");
    if (!hooks[1] || !hooks[2] || !hooks[4]) return failed("the module registered no init, frame or release hook");
    missing = rvk_missing_slot(&runtime, graphics.BlitSprite != NULL); /* one sprite routine asks for all six */
    return missing == NULL || failed("%s is null", missing);
}

/* Calls a script function as an interpreter would. Its result; 0x80000000 after an error. */
static int32_t call(const char* signature, const int32_t* values) {
    int32_t i = 0;
    while (i < function_count && strcmp(functions[i].signature, signature) != 0) ++i;
    if (i == function_count) return failed("the module registered no %s", signature), INT32_MIN;
    arguments = values;
    argument_count = 0;
    for (const char* type = strchr(signature, '('); *type != '\0'; ++type) argument_count += *type == 'I';
    arguments_left = argument_count;
    return functions[i].handler();
}

/* ---- One frame: the hook schedules the scrolls, and drawing the main list calls the module back. */
static int frame(int32_t scrolls_shown) {
    int32_t drawn = 0;
    SelectBlitList(NULL);
    hooks[2]();
    SortBlitList();
    for (int32_t i = 0; i < main_list.count; ++i) drawn += main_list.order[i]->draw(main_list.order[i]);
    ClearBlitList(); /* the module has selected the main list again */
    return drawn == scrolls_shown || failed("%d scrolls were drawn, not %d", (int)drawn, (int)scrolls_shown);
}

/* Byte 0 of a pixel is red, 1 green, 2 blue; byte 3 is not written. */
static int write_picture(const char* path, const uint32_t* pixels, int32_t width, int32_t height) {
    FILE* const out = fopen(path, "wb");
    if (out == NULL) return failed("cannot write %s: %s", path, strerror(errno));
    fprintf(out, "P6\n%d %d\n255\n", (int)width, (int)height);
    for (int32_t i = 0; i < width * height; ++i) fwrite(&pixels[i], 1, 3, out);
    const int complete = !ferror(out);
    return (fclose(out) == 0 && complete) || failed("cannot write all of %s: %s", path, strerror(errno));
}

#ifndef HOST_GOES_ON /* sprites_host.c begins with all above and has a game of its own */

static void paint_map(void) { /* soft diagonal stripes, and a dot in every field of 32 x 32 */
    for (int32_t y = 0; y < map_height; ++y) {
        for (int32_t x = 0; x < map_width; ++x) {
            const int32_t dx = x % 32 - 16, dy = y % 32 - 16, wave = abs((x + y) % 32 - 16);
            const int32_t red = 40 + x * 160 / map_width, green = 60 + y * 150 / map_height, blue = 110 + wave * 5;
            map_pixels[y][x] = dx * dx + dy * dy < 64 ? 0xd8f8ff : (uint32_t)(red | green << 8 | blue << 16);
        }
    }
}

/* Scroll 0, file 1, map 10 in front and none behind, through region 1, repeating across and down (1 | 2). */
static int play(void) {
    static const int32_t start_arguments[] = {0, 1, 10, 0, 1, 3};
    if (call("scroll_start(I,I,I,I,I,I)", start_arguments) != 0) /* the scroll's number */
        return failed("the scroll did not start");
    for (int32_t i = 0; i < 60; ++i) {
        globals[0][field_x0] += 5; /* the script's own fields: where the scroll is to go */
        globals[0][field_y0] -= 2;
        if (!frame(1)) return 0;
    }
    return 1;
}

int main(int argc, char** argv) {
    if (argc != 3) {
        fprintf(stderr, "usage: %s MODULE PICTURE.ppm\n", program);
        return 2;
    }
    if (!load(argv[1])) return 1;
    hooks[1]();
    paint_map();
    const int played = play();
    hooks[4]();
    return played && write_picture(argv[2], &screen_pixels[0][0], screen_width, screen_height) ? 0 : 1;
}
#endif
