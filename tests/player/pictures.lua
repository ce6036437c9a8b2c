-- options: --bpp 8
-- options: --bpp 16
-- options: --bpp 32
-- Pictures survive the way through a PNG file, at each depth, and a change of depth.
local scratch = os.getenv("SCRATCH") .. "/"
local _, _, bpp = screen_size()
math.randomseed(3)

local function random_pixel()
    if math.random() < 0.2 then return 0 end
    if bpp == 8 then return math.random(1, 255) end
    return rgb(math.random(0, 255), math.random(0, 255), math.random(0, 255))
end

local function same(graph_a, graph_b, w, h)
    for y = 0, h - 1 do
        for x = 0, w - 1 do
            local a, b = pixel(1, graph_a, x, y), pixel(1, graph_b, x, y)
            assert(a == b, ("%d bits, %d x %d at %d, %d: %x, then %x"):format(bpp, w, h, x, y, a, b))
        end
    end
end

for round = 1, 12 do
    local w, h = math.random(1, 40), math.random(1, 40)
    new_map(1, 10, w, h)
    for y = 0, h - 1 do for x = 0, w - 1 do pixel(1, 10, x, y, random_pixel()) end end
    save_map(1, 10, scratch .. "picture.png")
    local loaded_w, loaded_h = load_map(1, 11, scratch .. "picture.png")
    assert(loaded_w == w and loaded_h == h)
    same(10, 11, w, h)
end

-- A part of a picture is the same as those pixels of the whole one.
local function refused(words, ...)
    local fine, message = pcall(load_map, 1, 12, scratch .. "picture.png", ...)
    assert(not fine and message:find(words, 1, true), message)
end
new_map(1, 10, 23, 17)
for y = 0, 16 do for x = 0, 22 do pixel(1, 10, x, y, random_pixel()) end end
save_map(1, 10, scratch .. "picture.png")
for _, part in ipairs {{0, 0, 23, 17}, {22, 16, 1, 1}, {4, 3, 9, 5}, {0, 16, 23, 1}} do
    local left, top, w, h = table.unpack(part)
    local loaded_w, loaded_h = load_map(1, 12, scratch .. "picture.png", left, top, w, h)
    assert(loaded_w == w and loaded_h == h)
    for y = 0, h - 1 do for x = 0, w - 1 do assert(pixel(1, 12, x, y) == pixel(1, 10, left + x, top + y)) end end
end
for _, part in ipairs {{-1, 0, 3, 3}, {0, -1, 3, 3}, {20, 0, 4, 3}, {0, 15, 3, 3}, {0, 0, 0, 3}, {0, 0, 3, -3}, {2147483647, 0, 1, 1},
                       {0, 0, 1, 2147483647}} do
    refused("picture.png is 23 x 17: there is no part of", table.unpack(part))
end
refused("four numbers", 1, 2, 3)
assert(map_size(1, 12) == 23, "a part that does not exist replaces nothing")

-- An indexed PNG with another palette is matched colour by colour at 8 bits; elsewhere it is just a picture.
if bpp == 8 then
    local function palette(first, second)
        local colours = {"#000000", first, second}
        for i = 4, 256 do colours[i] = "#808080" end
        set_palette(colours)
    end
    palette("#ff0000", "#00ff00")
    new_map(1, 20, 3, 1)
    for x = 0, 2 do pixel(1, 20, x, 0, x) end
    save_map(1, 20, scratch .. "indexed.png")
    palette("#00fe00", "#fe0000")
    load_map(1, 21, scratch .. "indexed.png")
    assert(pixel(1, 21, 0, 0) == 0 and pixel(1, 21, 1, 0) == 2 and pixel(1, 21, 2, 0) == 1)
end

-- Colours come back from pixel values as near as the depth allows; opaque black is not transparent.
if bpp > 8 then
    local tolerance = bpp == 16 and 8 or 0
    for _, colour in ipairs{{255, 255, 255}, {255, 0, 0}, {0, 255, 0}, {0, 0, 255}, {200, 100, 50}} do
        local got = {to_rgb(rgb(table.unpack(colour)))}
        for i = 1, 3 do assert(math.abs(got[i] - colour[i]) <= tolerance, ("%d, not %d"):format(got[i], colour[i])) end
    end
end
assert(rgb(0, 0, 0) ~= 0 and rgb(1, 2, 3, 0) == 0)

-- Drawing is cut at the edges and goes where it is told.
new_map(1, 30, 5, 4)
local white = rgb(255, 255, 255)
box(1, 30, -3, 2, 5, 50, white)
line(1, 30, 4, -10, 4, 10, white)
local shape = {}
for y = 0, 3 do
    for x = 0, 4 do shape[#shape + 1] = pixel(1, 30, x, y) == white and "#" or "." end
    shape[#shape + 1] = "/"
end
assert(table.concat(shape) == "....#/....#/##..#/##..#/", table.concat(shape))
assert(pixel(1, 30, 5, 0) == nil and pixel(1, 30, 0, -1) == nil)
map_text(1, 30, -2, -2, "W", white)

-- Opacity per pixel takes the same way, where there is any.
if bpp == 32 then
    new_map(1, 35, 2, 1)
    pixel(1, 35, 0, 0, rgb(10, 20, 30, 128))
    set_alpha(1, 35, true)
    save_map(1, 35, scratch .. "alpha.png")
    load_map(1, 36, scratch .. "alpha.png")
    local r, g, b, a = to_rgb(pixel(1, 36, 0, 0))
    assert(r == 10 and g == 20 and b == 30 and a == 128, a)
    assert(pixel(1, 36, 1, 0) == 0)
end

-- Control points.
assert(get_point(1, 30, 0) == nil)
set_point(1, 30, 2, 7, -8)
local x, y = get_point(1, 30, 2)
assert(x == 7 and y == -8 and get_point(1, 30, 0) == 0 and get_point(1, 30, 3) == nil)

-- Maps follow the video mode to another depth, and keep their colours as well as it can.
local red = {to_rgb(rgb(255, 0, 0))}
new_map(1, 40, 2, 2, "#ff0000")
for _, depth in ipairs{16, 32, 8} do
    set_mode(320, 200, depth)
    local got = {to_rgb(pixel(1, 40, 1, 1))}
    for i = 1, 3 do assert(math.abs(got[i] - red[i]) <= 8, ("%d bits: %d, not %d"):format(depth, got[i], red[i])) end
end
unload_map(1, 40)
assert(map_size(1, 40) == nil)
quit()
