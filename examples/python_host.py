#!/usr/bin/env python3
"""The host of one page in Python: the same scroll over the same map, and the same picture.

usage: python_host.py PREFIX PICTURE.ppm       PREFIX: where the module's files were installed or unpacked to

For a 32-bit interpreter. The binding is made from records.json; what each slot must do says host-authors.md.
"""
import ctypes
import pathlib
import re
import sys

from python_binding import Records, pinned

WIDTH, HEIGHT, MAP_WIDTH, MAP_HEIGHT = 320, 200, 192, 160
SCROLLS, FIELDS, X0, Y0 = 10, 15, 8, 9  # of the script global scroll[10]
prefix, picture = (pathlib.Path(word).resolve() for word in sys.argv[1:]) if len(sys.argv) == 3 else sys.exit(__doc__)
records = Records(prefix / "share/RVK_mod_scroll2D/records.json")
new, Blit, Region, address = records.new, records.types["__RVKBlit2D__"], records.types["__RVKRegion__"], ctypes.addressof

# Data that the host owns and the module borrows. Pixels are 32 bits; here byte 0 is red.
screen_pixels = (ctypes.c_uint32 * (WIDTH * HEIGHT))()
map_pixels = (ctypes.c_uint32 * (MAP_WIDTH * MAP_HEIGHT))()
screen = new("MapRecord", width=WIDTH, height=HEIGHT, pixels=address(screen_pixels))
stripes = new("MapRecord", width=MAP_WIDTH, height=MAP_HEIGHT, pixels=address(map_pixels))
entry = new("MapEntry", word0=1, bitmap=ctypes.pointer(stripes))
file = new("FileRecord", word1=1, word2=1)
regions = (Region * 2)(Region(0, WIDTH - 1, 0, HEIGHT - 1), Region(16, 303, 12, 187))
script_globals = (ctypes.c_int32 * FIELDS * SCROLLS)()


class Queue:
    """A blit list of 64 entries; longer than a host of one scroll needs."""
    def __init__(self):
        self.entries, self.order, self.count = (Blit * 64)(), (ctypes.POINTER(Blit) * 64)(), 0
        self.record = new("BlitList", zorder=self.order)

    def add(self):
        if self.count == len(self.entries):
            return None
        self.entries[self.count] = Blit()
        self.order[self.count] = ctypes.pointer(self.entries[self.count])
        self.count += 1
        return address(self.entries[self.count - 1])

    def sort(self):  # a larger z lies deeper and comes first; equal ones keep their order
        for place, blit in enumerate(sorted(self.entries[:self.count], key=lambda blit: -blit.z)):
            self.order[place] = ctypes.pointer(blit)
        return 1

    def clear(self):
        self.count = 0
        return 0


main, scrolls = Queue(), Queue()
current, arguments, result, functions, hooks = main, [], 0, {}, {}


def select(queue):
    global current
    current = scrolls if queue else main
    return 1


def take_result(value):
    global result
    result = value
    return value


def raise_error(code, function, _zero, argument, value):
    print(f"{function.decode()}: error {code}, argument {argument}, value {value}", file=sys.stderr)
    return 0


graphics = new(
    "Graphics2DInterface", Video=ctypes.pointer(new("VideoInfo", bits_per_pixel=32)), ScreenMap=ctypes.pointer(screen),
    Regions=regions, CreateBlitList=lambda *_: 1, SelectBlitList=select, NewBlit=lambda: current.add(),
    SortBlitList=lambda: current.sort(), ClearBlitList=lambda: current.clear(), GetBlitList=lambda: address(current.record),
    BlitListCount=lambda: current.count, GetFile=lambda number: address(file) if number == 1 else None,
    FileCount=lambda: 2, SystemGraphCount=lambda: 1, RegionCount=lambda: 2,
    GetMap=lambda number, graph: address(entry) if (number, graph) == (1, 10) else None,
    RegionDefined=lambda region: region in (0, 1))
processes = new("ProcessServices", FirstProcessOfType=lambda _type: None, ProcessExists=lambda _id: 0)
runtime = new(
    "HostRuntime", GlobalData=ctypes.cast(script_globals, ctypes.POINTER(ctypes.c_uint8)), Processes=ctypes.pointer(processes),
    ParamCount=lambda: len(arguments), PopInt=arguments.pop, ReturnInt=take_result, RaiseError=raise_error,
    GlobalOffset=lambda _zero, _name: 0, DeleteProcess=lambda _process, _two: None,
    FrameState=ctypes.pointer(new("FrameState", suspend_flag=ctypes.pointer(ctypes.c_uint8(0)))),
    Graphics=ctypes.pointer(graphics))


def take_globals(text):
    for field, default in enumerate(re.findall(rb"= *(-?\d+);", text)):
        for scroll in range(SCROLLS):
            script_globals[scroll][field] = int(default)


def rows(table, last):
    """Of a table that ends with a row in which that field is null."""
    place = 0
    while getattr(table[place], last):
        yield table[place]
        place += 1


registrar = new(
    "ExportRegistrar", RegisterConstants=lambda _table: None, RegisterGlobals=take_globals,
    RegisterFunctions=lambda table: functions.update({row.signature: pinned(row.handler) for row in rows(table, "signature")}),
    RegisterHooks=lambda table: hooks.update({row.id: pinned(row.function) for row in rows(table, "function")}),
    GetRuntime=lambda: address(runtime))


def call(signature, *values):
    arguments[:] = values
    functions[signature]()
    return result


def frame():
    select(None)
    hooks[2]()
    current.sort()
    drawn = sum(main.order[place].contents.draw(main.order[place]) for place in range(main.count))
    current.clear()
    return drawn


module = ctypes.CDLL(str(prefix / "lib/rvk/RVK_mod_scroll2D.so"))
if module.RVK_mod_scroll2D_MainLibraryExports(ctypes.byref(registrar)) != 1:
    sys.exit("the module did not register itself")
hooks[1]()
for y in range(MAP_HEIGHT):  # soft diagonal stripes, and a dot in every field of 32 x 32
    for x in range(MAP_WIDTH):
        red, green, blue = 40 + x * 160 // MAP_WIDTH, 60 + y * 150 // MAP_HEIGHT, 110 + abs((x + y) % 32 - 16) * 5
        dot = (x % 32 - 16) ** 2 + (y % 32 - 16) ** 2 < 64
        map_pixels[y * MAP_WIDTH + x] = 0xd8f8ff if dot else red | green << 8 | blue << 16
if call(b"scroll_start(I,I,I,I,I,I)", 0, 1, 10, 0, 1, 3) != 0:
    sys.exit("the scroll did not start")
for _ in range(60):
    script_globals[0][X0] += 5
    script_globals[0][Y0] -= 2
    if frame() != 1:
        sys.exit("the scroll was not drawn")
hooks[4]()
colours = bytearray(screen_pixels)
del colours[3::4]
picture.write_bytes(b"P6\n%d %d\n255\n" % (WIDTH, HEIGHT) + colours)
