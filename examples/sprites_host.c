/*
 * What a host with sprites adds to the host of one page: processes that live in a scroll, a map that another scroll
 * draws into, and a change of the video mode.
 *
 *     cc -m32 -std=c99 -I PREFIX/include sprites_host.c -ldl -o sprites_host
 *     ./sprites_host PREFIX/lib/rvk/RVK_mod_scroll2D.so picture.ppm
 *
 * A balloon flies over hills at dusk and the camera follows it. The moon stands behind the hills and a board before
 * them, on which a second scroll shows a map of its own. The picture has the screen twice: on the left after 40 frames
 * at 32 bits, on the right after 40 more at 16 bits on a smaller screen.
 */
#define HOST_GOES_ON
#include "one_page_host.c"

enum { hills = 10, sky = 11, pattern = 12, balloon = 20, moon = 21, board = 30, graph_limit = 31 };
enum { whole_screen, scroll_view, board_view, areas_defined }; /* regions */
enum { small_width = 256, small_height = 160, picture_width = screen_width + small_width };

/* ---- Maps. They have the depth of the video mode, 32 or 16 bits, and pixels of the value 0 are transparent. */
static struct Graphic {
    int32_t graph;
    MapRecord bitmap;
    MapEntry entry;
} graphics_of_file[] = {
    {.graph = hills, .bitmap = {.width = 480, .height = 176}}, {.graph = sky, .bitmap = {.width = 240, .height = 176}},
    {.graph = pattern, .bitmap = {.width = 64, .height = 64}}, {.graph = board, .bitmap = {.width = 104, .height = 72}},
    {.graph = balloon, .bitmap = {.width = 40, .height = 56}}, {.graph = moon, .bitmap = {.width = 48, .height = 48}},
};
enum { graphic_count = sizeof graphics_of_file / sizeof graphics_of_file[0] };

static MapEntry* find_map(int32_t number, int32_t graph) {
    for (int32_t i = 0; number == 1 && i < graphic_count; ++i) {
        if (graphics_of_file[i].graph == graph) return &graphics_of_file[i].entry;
    }
    return NULL;
}
/* The limit of graph numbers in file 0, and of scroll_set_destination in every file. */
static int32_t system_graph_count(void) { return graph_limit; }

static uint32_t pixel_at(const MapRecord* from, int32_t x, int32_t y) {
    const int32_t at = y * from->width + x;
    return video.bits_per_pixel == 16 ? ((const uint16_t*)from->pixels)[at] : ((const uint32_t*)from->pixels)[at];
}
static void set_pixel(const MapRecord* to, int32_t x, int32_t y, uint32_t pixel) {
    const int32_t at = y * to->width + x;
    if (video.bits_per_pixel == 16) ((uint16_t*)to->pixels)[at] = (uint16_t)pixel;
    else ((uint32_t*)to->pixels)[at] = pixel;
}

/* Colours are 0xBBGGRR, as in the picture. At 16 bits red has the bits 11 to 15, green 5 to 10, blue 0 to 4. */
static uint32_t to_pixel(uint32_t c) {
    return video.bits_per_pixel == 16 ? (c & 0xf8) << 8 | (c >> 10 & 0x3f) << 5 | (c >> 19 & 0x1f) : c;
}
static uint32_t to_colour(uint32_t p) {
    if (video.bits_per_pixel != 16) return p;
    return (p >> 11) * 255 / 31 | (p >> 5 & 63) * 255 / 63 << 8 | (p & 31) * 255 / 31 << 16;
}
static uint32_t colour(int32_t red, int32_t green, int32_t blue) { return (uint32_t)(red | green << 8 | blue << 16); }
static int32_t wave(int32_t x, int32_t length) { return abs(x % length - length / 2); }

static uint32_t colour_of(int32_t graph, int32_t x, int32_t y) { /* 0: nothing there */
    const int32_t down = y - 92 - wave(x, 240) / 4 + wave(x + 40, 160) / 3, dx = x - 20, dy = y - 20;
    switch (graph) {
    case hills: return down < 0 ? 0 : down < 4 ? 0x5abe96 : colour(40 + wave(x + y, 24), 110 - down / 2, 60);
    case sky: return (x * x * 3 + x * y + y * 57) % 193 == 0 && y < 96 ? 0xdcfaff : colour(30 + y, 30 + y / 2, 90 - y / 4);
    case pattern: return (x / 16 + y / 16) % 2 ? colour(230, 120, 40 + x * 2) : colour(40, 70 + y * 2, 160);
    case board: return colour(90, 60, 40);
    case moon: return (x - 24) * (x - 24) + (y - 24) * (y - 24) < 22 * 22 ? colour(250, 240, 200 - y) : 0;
    default: /* the balloon, with the basket under it */
        if (dx * dx + dy * dy < 20 * 20) return dx / 6 % 2 ? colour(250, 220, 90) : colour(220, 60 + y, 50);
        return dy > 22 && abs(dx) < 6 ? colour(140, 90, 50) : 0;
    }
}

/* Every map gets new pixels at the depth of the video mode. */
static int make_maps(void) {
    for (int32_t i = 0; i < graphic_count; ++i) {
        struct Graphic* const made = &graphics_of_file[i];
        const int32_t width = made->bitmap.width, size = width * made->bitmap.height;
        made->entry = (MapEntry){.word0 = 1, .bitmap = &made->bitmap};
        free(made->bitmap.pixels);
        made->bitmap.pixels = calloc((size_t)size, video.bits_per_pixel == 16 ? 2 : 4);
        if (made->bitmap.pixels == NULL) return failed("no memory for map %d", (int)made->graph);
        for (int32_t at = 0; at < size; ++at) {
            set_pixel(&made->bitmap, at % width, at / width, to_pixel(colour_of(made->graph, at % width, at / width)));
        }
    }
    return 1;
}

/* ---- Processes, one list: all of them live in the scrolls, and their mask of 1 shows them in scroll 0 alone. */
#define PROCESS(number, at_x, at_y, depth) \
    {.status = 2, .scroll_mask = 1, .file = 1, .graph = number, .x = at_x, .y = at_y, .z = depth, \
     .word33 = 1, .size = 100, .size_x = 100, .size_y = 100}
static ProcessLocals locals[] = {
    PROCESS(balloon, 40, 60, 500), PROCESS(board, 244, 92, 505), PROCESS(moon, 104, 80, 600)};
static ProcessNode nodes[] = {
    {.data = &locals[0], .next = &nodes[1]}, {.data = &locals[1], .next = &nodes[2]}, {.data = &locals[2]}};
static ProcessNode* first_node = nodes;

static ProcessNode* first_process(int32_t type) { return type == 1 ? first_node : NULL; } /* 1 is c_scroll */
static int32_t id_of(const ProcessLocals* process) { return (int32_t)(intptr_t)process; }
static int32_t process_exists(int32_t id) {
    const ProcessNode* node = first_node;
    while (node != NULL && id_of(node->data) != id) node = node->next;
    return node != NULL;
}
static ProcessNode* end_process(ProcessLocals* process, int32_t two) {
    ProcessNode** link = &first_node;
    (void)two;
    while (*link != NULL && (*link)->data != process) link = &(*link)->next;
    if (*link != NULL) *link = (*link)->next;
    return *link; /* where a walk of the list goes on */
}

/* The middle of the graphic lies on the position. Nothing is culled before, and clip rectangles may be empty. These
 * processes are not mirrored, scaled or turned, and their words 43 and 44 are 0: one routine does for all six. */
static int32_t draw_sprite(__RVKBlit2D__* entry) {
    const MapRecord *const from = entry->bitmap, *const to = entry->target;
    for (int32_t y = 0; y < from->height; ++y) {
        for (int32_t x = 0; x < from->width; ++x) {
            const int32_t to_x = entry->pos_x - from->width / 2 + x, to_y = entry->pos_y - from->height / 2 + y;
            const uint32_t pixel = pixel_at(from, x, y);
            if (pixel == 0 || to_x < 0 || to_x >= to->width || to_y < 0 || to_y >= to->height) continue;
            if (entry->has_clip && (to_x < entry->clip_x || to_x > entry->clip_x2)) continue;
            if (entry->has_clip && (to_y < entry->clip_y || to_y > entry->clip_y2)) continue;
            set_pixel(to, to_x, to_y, pixel);
        }
    }
    return 1;
}

/* ---- Regions, and the two screens. */
static __RVKRegion__ areas[areas_defined] = { /* x, x2, y, y2 */
    {0, screen_width - 1, 0, screen_height - 1}, {16, 303, 12, 187}, {4, 99, 4, 67}};
static int32_t area_count(void) { return areas_defined; }
static int32_t area_defined(int32_t area) { return area >= 0 && area < areas_defined; }

static uint16_t small_pixels[small_height][small_width];
static MapRecord small_screen = {.width = small_width, .height = small_height, .pixels = small_pixels};

/* First all that is new, then the update hook, and before that nothing else of the module. */
static int change_mode(void) {
    video.bits_per_pixel = 16;
    graphics.ScreenMap = &small_screen;
    areas[whole_screen] = (__RVKRegion__){0, small_width - 1, 0, small_height - 1};
    areas[scroll_view] = (__RVKRegion__){16, 239, 12, 147};
    if (!make_maps()) return 0;
    hooks[3]();
    return 1;
}

static uint32_t picture[screen_height][picture_width];
static void take_screen(int32_t left) {
    const MapRecord* const shown = graphics.ScreenMap;
    for (int32_t y = 0; y < shown->height; ++y) {
        for (int32_t x = 0; x < shown->width; ++x) picture[y][left + x] = to_colour(pixel_at(shown, x, y));
    }
}

/* ---- The game. Scroll 0 has two planes that repeat across (1 | 4), and its front plane lies among the sprites (mode
 * 1). Scroll 1 draws into the board, so it is drawn first, which a z above the 512 of scroll 0 sees to. */
static int start(void) {
    static const int32_t aim_at_board[] = {1, 1, board, board_view}, on_board[] = {1, 1, pattern, 0, board_view, 3},
                         landscape[] = {0, 1, hills, sky, scroll_view, 1 | 4, 1};
    if (call("scroll_set_destination(I,I,I,I)", aim_at_board) != 1) return failed("the board is no destination");
    if (call("scroll_start(I,I,I,I,I,I)", on_board) != 1) return failed("scroll 1 did not start");
    if (call("scroll_start(I,I,I,I,I,I,I)", landscape) != 0) return failed("scroll 0 did not start");
    globals[1][field_z] = 600;
    globals[0][field_camera] = id_of(&locals[0]);
    return 1;
}

static int fly(int32_t frames) {
    for (int32_t i = 0; i < frames; ++i) {
        locals[0].x += 3;
        locals[0].y += i % 20 < 10 ? 1 : -1;
        globals[1][field_x0] += 1;
        globals[1][field_y0] += 1;
        if (!frame(2)) return 0;
    }
    return 1;
}

static int fly_twice(void) {
    static const int32_t all_scrolls[] = {-1};
    memset(picture, 0x60, sizeof picture);
    if (!make_maps() || !start() || !fly(40)) return 0;
    take_screen(0);
    if (!change_mode() || !fly(40)) return 0;
    take_screen(screen_width);
    if (call("scroll_stop(I)", all_scrolls) != 2) return failed("not both scrolls ran to the end");
    return first_node == NULL || failed("a process outlived the scroll that showed it");
}

static void add_slots(void) {
    graphics.Regions = areas;
    graphics.GetMap = find_map;
    graphics.SystemGraphCount = system_graph_count;
    graphics.RegionCount = area_count;
    graphics.RegionDefined = area_defined;
    graphics.BlitSprite = graphics.BlitSpriteScaled = graphics.BlitSpriteGeneral = draw_sprite;
    graphics.BlitSpriteRotated = graphics.BlitSpriteRotatedScaled = graphics.BlitSpriteRotatedGeneral = draw_sprite;
    processes.FirstProcessOfType = first_process;
    processes.ProcessExists = process_exists;
    runtime.DeleteProcess = end_process;
}

int main(int argc, char** argv) {
    program = "sprites_host";
    if (argc != 3) {
        fprintf(stderr, "usage: %s MODULE PICTURE.ppm\n", program);
        return 2;
    }
    add_slots();
    if (!load(argv[1])) return 1;
    if (hooks[3] == NULL) return !failed("the module registered no update hook");
    hooks[1]();
    const int flown = fly_twice();
    hooks[4]();
    for (int32_t i = 0; i < graphic_count; ++i) free(graphics_of_file[i].bitmap.pixels);
    return flown && write_picture(argv[2], &picture[0][0], picture_width, screen_height) ? 0 : 1;
}
