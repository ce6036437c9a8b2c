-- options: --size 64x48 --bpp 16
-- options: --size 64x48 --bpp 32
-- What a script sets up is on the screen: background, a scroll after its camera, a sprite on it, text.
local scratch = os.getenv("SCRATCH") .. "/"

-- The colour of a screen pixel in the frame that is drawn next.
local function after_frame()
    shot(scratch .. "screen.png")
    frame()
    load_map(9, 1, scratch .. "screen.png")
    return function(x, y)
        local r, g, b = to_rgb(pixel(9, 1, x, y))
        return ("%d%d%d"):format(r // 200, g // 200, b // 200)  -- which channels are bright
    end
end
local function expect(got, expected) assert(got == expected, ("expected %s, got %s"):format(expected, got)) end

background("#0000ff")
local at = after_frame()
expect(at(0, 0), "001")
expect(at(63, 47), "001")

-- A green map with one white column at x = 100; the view follows a hero whose picture is red.
new_map(1, 10, 200, 100, "#00ff00")
line(1, 10, 100, 0, 100, 99, "#ffffff")
new_map(1, 20, 3, 3, "#ff0000")
define_region(5, 8, 8, 48, 32)
expect(scroll_start(0, 1, 10, 0, 5, 0), 0)
local hero = process{ctype = c_scroll, file = 1, graph = 20, x = 90, y = 50}
scroll[0].camera = hero
at = after_frame()
expect(scroll[0].x0, 90 - 24)
expect(scroll[0].y0, 50 - 16)
local dx, dy = scroll_offset(0)
expect(dx, 8 - (90 - 24))
expect(at(90 + dx, 50 + dy), "100")
expect(at(90 + dx + 2, 50 + dy), "010")
expect(at(100 + dx, 20 + 8), "111")
expect(at(7, 20), "001")
expect(at(56, 20), "001")

hero.x = hero.x + 10
hero.y = hero.y - 1
at = after_frame()
expect(scroll[0].x0, 100 - 24)
expect(at(8 + 24, 8), "111")
expect(at(90 + dx, 50 + dy), "100")

-- A map changed by the script shows after a refresh; hidden and suspended scrolls let the background through.
box(1, 10, 0, 0, 200, 100, "#ff0000")
expect(scroll_refresh(0), 1)
expect(after_frame()(10, 10), "100")
scroll[0].visible = 0
expect(after_frame()(10, 10), "001")
scroll[0].visible = 1
suspend(true)
expect(after_frame()(10, 10), "001")
suspend(false)
expect(after_frame()(10, 10), "100")

-- Text lasts one frame, and is as large as it says.
background()
expect(scroll_stop(0), 1)
text(10, 10, "X", "#ffffff", 2)
local function bright(look)
    local count, right, bottom = 0, -1, -1
    for y = 0, 47 do
        for x = 0, 63 do
            if look(x, y) == "111" then count, right, bottom = count + 1, math.max(right, x), math.max(bottom, y) end
        end
    end
    return count, right, bottom
end
local w, h = text_size("X", 2)
local count, right, bottom = bright(after_frame())
assert(count > 20 and right < 10 + w and bottom < 10 + h, count)
expect(bright(after_frame()), 0)

-- Each scroll has an element of its own.
for i = 0, #scroll - 1 do scroll[i].speed = 10 + i end
for i = 0, #scroll - 1 do expect(scroll[i].speed, 10 + i) end

-- Keys are up until the script presses them.
assert(not key("right"))
press("right")
assert(key("right") and not key("left"))
release("right")
assert(not key("right"))
quit()
