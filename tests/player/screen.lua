-- options: --size 64x48 --bpp 16
-- options: --size 64x48 --bpp 32
-- What a script sets up is on the screen: background, a scroll after its camera, a sprite on it, text.
local scratch = os.getenv("SCRATCH") .. "/"
local _, _, bpp = screen_size()
local function expect(got, expected) assert(got == expected, ("expected %s, got %s"):format(expected, got)) end

-- The colour of a screen pixel in the frame that is drawn next: which channels are bright.
local function after_frame()
    shot(scratch .. "screen.png")
    frame()
    load_map(9, 1, scratch .. "screen.png")
    return function(x, y)
        local r, g, b = to_rgb(pixel(9, 1, x, y))
        return ("%d%d%d"):format(r // 200, g // 200, b // 200)
    end
end
local function bright(look)
    local count, right, bottom = 0, -1, -1
    for i = 0, 64 * 48 - 1 do
        if look(i % 64, i // 64) == "111" then count, right, bottom = count + 1, math.max(right, i % 64), math.max(bottom, i // 64) end
    end
    return count, right, bottom
end

background("#0000ff")
local at = after_frame()
expect(at(0, 0) .. at(63, 47), "001001")

-- A sprite of the screen, as large as its sizes say, and text, which lasts one frame.
new_map(1, 30, 8, 8, "#ffffff")
local box = process{file = 1, graph = 30, x = 32, y = 24, size_x = 300, size_y = 50}
expect(table.concat({bright(after_frame())}, " "), "96 42 25")
kill(box)
text(10, 10, "X", "#ffffff", 2)
local w, h = text_size("X", 2)
local count, right, bottom = bright(after_frame())
assert(count > 20 and right < 10 + w and bottom < 10 + h, count)
expect(bright(after_frame()), 0)

-- A green map with one white column at x = 100; the view follows a hero whose picture is red.
new_map(1, 10, 200, 100, "#00ff00")
line(1, 10, 100, 0, 100, 99, "#ffffff")
new_map(1, 20, 3, 3, "#ff0000")
define_region(5, 8, 8, 48, 32)
expect(start_scroll(0, 1, 10, 0, 5, 0), 0)
local hero = process{ctype = c_scroll, file = 1, graph = 20, x = 90, y = 50}
scroll[0].camera = hero
at = after_frame()
expect(scroll[0].x0, 90 - 24)
expect(scroll[0].y0, 50 - 16)
local dx, dy = scroll_offset(0)
expect(dx, 8 - (90 - 24))
expect(at(90 + dx, 50 + dy) .. at(90 + dx + 2, 50 + dy) .. at(100 + dx, 20 + 8) .. at(7, 20) .. at(56, 20), "100010111001001")
hero.x, hero.y = hero.x + 10, hero.y - 1
at = after_frame()
expect(scroll[0].x0, 100 - 24)
expect(at(8 + 24, 8) .. at(90 + dx, 50 + dy), "111100")

-- A map changed by the script shows after a refresh; hidden and suspended scrolls let the background through.
new_map(1, 10, 200, 100, "#ff0000")
expect(scroll_refresh(0), 1)
expect(after_frame()(10, 10), "100")
for _, hide in ipairs{function(on) scroll[0].visible = on and 0 or 1 end, suspend} do
    hide(true)
    expect(after_frame()(10, 10), "001")
    hide(false)
    expect(after_frame()(10, 10), "100")
end

-- A change of mode keeps scrolls, and stops them when it is told to; a stop ends those who live in them.
set_mode(80, 60, bpp)
expect(scroll_offset(0), dx - 10)
set_mode(64, 48, bpp, true)
expect(scroll_offset(0), nil)
expect(exists(hero), false)
for i = 0, #scroll - 1 do scroll[i].speed = 10 + i end
for i = 0, #scroll - 1 do expect(scroll[i].speed, 10 + i) end

-- Keys are up until the script presses them.
press("right")
assert(key("right") and not key("left"))
release("right")
assert(not key("right"))
quit()
