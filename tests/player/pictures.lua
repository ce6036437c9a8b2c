-- options: --bpp 8
-- options: --bpp 16
-- options: --bpp 32
-- Pictures survive the way through a PNG file, at each depth, and a change of depth.
local scratch = os.getenv("SCRATCH") .. "/"
local _, _, bpp = screen_size()
math.randomseed(3)

local function save_random_map(w, h, alpha)
    new_map(1, 10, w, h)
    set_alpha(1, 10, alpha)
    local function byte() return math.random(0, 255) end
    for i = 0, w * h - 1 do
        local value = bpp == 8 and math.random(255) or rgb(byte(), byte(), byte(), alpha and byte() or 255)
        pixel(1, 10, i % w, i // w, math.random() < 0.2 and 0 or value)
    end
    save_map(1, 10, scratch .. "picture.png")
end

-- A picture, or a part of one, is loaded as it was saved.
local function same_part(left, top, w, h, ...)
    local loaded_w, loaded_h = load_map(1, 11, scratch .. "picture.png", ...)
    assert(loaded_w == w and loaded_h == h)
    for i = 0, w * h - 1 do
        local x, y = i % w, i // w
        assert(pixel(1, 11, x, y) == pixel(1, 10, left + x, top + y), ("%d x %d at %d, %d"):format(w, h, x, y))
    end
end
for round = 1, 12 do
    local w, h = math.random(40), math.random(40)
    save_random_map(w, h, bpp == 32 and round % 2 == 0)
    same_part(0, 0, w, h)
end
save_random_map(23, 17, false)
for _, part in ipairs {{0, 0, 23, 17}, {22, 16, 1, 1}, {4, 3, 9, 5}, {0, 16, 23, 1}} do
    same_part(part[1], part[2], part[3], part[4], table.unpack(part))
end
for _, part in ipairs {{-1, 0, 3, 3}, {0, -1, 3, 3}, {20, 0, 4, 3}, {0, 15, 3, 3}, {0, 0, 0, 3}, {0, 0, 3, -3}, {2147483647, 0, 1, 1},
                       {0, 0, 1, 2147483647}} do
    local fine, message = pcall(load_map, 1, 11, scratch .. "picture.png", table.unpack(part))
    assert(not fine and message:find("picture.png is 23 x 17: there is no part of", 1, true), message)
end
assert(not pcall(load_map, 1, 11, scratch .. "picture.png", 1, 2, 3) and map_size(1, 11) == 23)

-- At 8 bits pictures are matched to the palette colour by colour, and to another one that comes later; what a script draws keeps
-- its index, and so does a picture that brought its palette. A scroll that runs shows it.
if bpp == 8 then
    local function palette(...)
        local colours = {"#000000", ...}
        for i = #colours + 1, 256 do colours[i] = "#808080" end
        set_palette(colours)
    end
    local function expect(graph, ...)
        for x, index in ipairs {...} do assert(pixel(1, graph, x - 1, 0) == index, x) end
    end
    palette("#ff0000", "#00ff00")
    new_map(1, 20, 3, 1)
    for x = 0, 2 do pixel(1, 20, x, 0, x) end
    save_map(1, 20, scratch .. "indexed.png")
    load_map(1, 21, scratch .. "indexed.png")
    palette("#00fe00", "#fe0000")
    load_map(1, 22, scratch .. "indexed.png")
    expect(20, 0, 1, 2) expect(21, 0, 1, 2) expect(22, 0, 2, 1)
    scroll_start(0, 1, 22, 0, -1, 1)
    pixel(1, 22, 0, 0, 5)
    palette("#0000ff", "#ff0000", "#00ff00")
    expect(20, 0, 1, 2) expect(21, 0, 1, 2) expect(22, 5, 2, 3)
    shot(scratch .. "shot.png")
    frame()
    load_map(1, 23, scratch .. "shot.png")
    expect(23, 4, 2, 3)                                   -- 4: the first of the greys
    scroll_stop(0)
    set_mode(64, 48, 32)
    new_map(1, 24, 2, 1, "#ff0000")
    set_mode(64, 48, 8)
    palette("#ff0000", "#0000ff")
    expect(24, 1, 1)
end

-- Drawing is cut at the edges and goes where it is told.
new_map(1, 30, 5, 4)
local white = rgb(255, 255, 255)
box(1, 30, -3, 2, 5, 50, white)
line(1, 30, 4, -10, 4, 10, white)
local shape = ""
for i = 0, 19 do shape = shape .. (pixel(1, 30, i % 5, i // 5) == white and "#" or ".") end
assert(shape == "....#....###..###..#", shape)
assert(pixel(1, 30, 5, 0) == nil and pixel(1, 30, 0, -1) == nil)
map_text(1, 30, -2, -2, "W", white)

-- Control points, and maps that follow the video mode to another depth.
assert(get_point(1, 30, 0) == nil)
set_point(1, 30, 2, 7, -8)
local x, y = get_point(1, 30, 2)
assert(x == 7 and y == -8 and get_point(1, 30, 0) == 0 and get_point(1, 30, 3) == nil)
assert(rgb(0, 0, 0) ~= 0 and rgb(1, 2, 3, 0) == 0)
new_map(1, 40, 2, 2, "#ff0000")
for _, depth in ipairs{16, 32, 8} do
    set_mode(320, 200, depth)
    local r, g, b = to_rgb(pixel(1, 40, 1, 1))
    assert(r > 240 and g + b < 16, depth)
end
unload_map(1, 40)
assert(map_size(1, 40) == nil)
quit()
