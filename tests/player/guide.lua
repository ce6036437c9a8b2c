-- options: --bpp 8
-- options: --bpp 16
-- options: --bpp 32
-- What docs/script-authors.md promises, promise by promise.
local screen_w, screen_h, bpp = screen_size()
set_mode(320, 200, bpp)
new_map(1, 10, 1000, 800, "#ff0000")
new_map(1, 11, 600, 500, "#00ff00")
new_map(1, 12, 64, 48, "#0000ff")

local function same(got, expected, what)
    assert(got == expected, ("%s: %s, not %s"):format(what, got, expected))
end

local function refused(words, fn, ...)
    local fine, message = pcall(fn, ...)
    assert(not fine and message:find(words, 1, true), ("%s, not %s"):format(message, words))
end

local function fields(n, expected)
    for name, value in pairs(expected) do same(scroll[n][name], value, ("scroll[%d].%s"):format(n, name)) end
end

local defaults = {camera = 0, ratio = 200, file = 0, graph1 = 0, graph2 = 0, region1 = -1, region2 = -1, speed = 0,
                  x0 = 0, y0 = 0, x1 = 0, y1 = 0, z = 512, alpha = 255, visible = 1}
local function fresh(...)
    scroll_stop(all_scroll)
    same(scroll_start(0, ...), 0, "scroll_start")
end

-- ---- scroll_start: errors, choice of maps, start positions
for n = 0, 9 do fields(n, defaults) end
refused("(error 107, argument 1, value 10)", scroll_start, 10, 1, 10, 0, -1, 0)
refused("(error 107, argument 1, value -1)", scroll_start, all_scroll, 1, 10, 0, -1, 0)
refused("error 109, argument 2", scroll_start, 0, -1, 10, 0, -1, 0)
refused("error 109, argument 2", scroll_start, 0, 100, 10, 0, -1, 0)
refused("error 110, argument 3", scroll_start, 0, 1, 1000, 0, -1, 0)
refused("error 110, argument 4", scroll_start, 0, 1, 10, -1, -1, 0)
refused("error 111, argument 2", scroll_start, 0, 7, 10, 0, -1, 0)
refused("error 108, argument 5", scroll_start, 0, 1, 10, 0, 77, 0)
refused("error 108, argument 5", scroll_start, 0, 1, 10, 0, -2, 0)
refused("error 112, argument 3", scroll_start, 0, 1, 40, 41, -1, 0)
define_region(3, 400, 0, 10, 10)
refused("error 146, argument 5", scroll_start, 0, 1, 10, 0, 3, 0)
same(scroll_start(0, 1, 10, 0, -1, 0, 4), -2147483648, "a mode that does not exist")
refused("takes 6 or 7 arguments", scroll_start, 0, 1, 10)
same(start_scroll(0, 1, 40, 11, -1, 0), 0, "plane 2 stands in")
fields(0, {file = 1, graph1 = 11, graph2 = 0})
set_point(1, 10, 0, 900, -7)
fresh(1, 10, 41, -1, 0)
fields(0, {x0 = 680, y0 = 0, graph1 = 10, graph2 = 0})
set_point(1, 10, 0, 100, 100)

-- ---- Moving without a camera: the edge stops a plane, a flag lets it go on, a small map always repeats
fresh(1, 10, 11, -1, 0)
scroll[0].x0, scroll[0].y0, scroll[0].x1, scroll[0].ratio, scroll[0].speed = 5000, -5, 30, 0, 1
same(scroll_move(0), 1, "scroll_move")
fields(0, {x0 = 680, y0 = 0, x1 = 0})                -- a jump of plane 1 loses what was asked of plane 2
scroll[0].x0, scroll[0].x1 = 660, 30
frame()
fields(0, {x0 = 660, x1 = 30})                       -- a step does not
fresh(1, 10, 0, -1, 1)
scroll[0].x0, scroll[0].y0 = -5000, 5000
frame()
fields(0, {x0 = -5000, y0 = 600})
fresh(1, 12, 0, -1, 0)
scroll[0].x0, scroll[0].y0 = -5000, 5000
frame()
fields(0, {x0 = -5000, y0 = 5000})

-- ---- The camera
local cam = process {ctype = c_scroll, x = 500, y = 400}
local function follow(x, y, more)
    cam = exists(cam) and cam or process {ctype = c_scroll}
    cam.x, cam.y, scroll[0].camera = x, y, cam
    for name, value in pairs(more or {}) do scroll[0][name] = value end
    scroll_move(0)
    return scroll[0].x0, scroll[0].y0
end
local function camera_at(x, y, expected_x, expected_y, more)
    local at_x, at_y = follow(x, y, more)
    same(at_x, expected_x, "x0"); same(at_y, expected_y, "y0")
end
fresh(1, 10, 11, -1, 0)
camera_at(500, 400, 340, 300)
scroll[0].x0 = 7
camera_at(500, 400, 340, 300)
same(scroll[0].x1, 120, "x1 at ratio 200")
camera_at(601, 400, 441, 300, {ratio = -100}); same(scroll[0].x1, 19, "x1 at ratio -100")
camera_at(602, 400, 442, 300, {ratio = 200}); same(scroll[0].x1, 19, "a single pixel is lost at ratio 200")
camera_at(604, 400, 444, 300, {ratio = 50}); same(scroll[0].x1, 23, "x1 at ratio 50")
camera_at(614, 400, 454, 300, {ratio = 0}); same(scroll[0].x1, 23, "x1 at ratio 0")
cam.resolution = 10
camera_at(5009, 4000, 340, 300)
cam.resolution = 0
define_region(1, 100, 50, 100, 100)                  -- 100 to 199, 50 to 149
camera_at(540, 400, 341, 300, {region1 = 1})
camera_at(450, 400, 341, 300)
camera_at(440, 349, 340, 299)
define_region(2, 20, 10, 280, 180)                   -- 20 to 299
camera_at(550, 400, 344, 299, {region2 = 2, speed = 4})
camera_at(550, 400, 348, 299)
camera_at(660, 400, 361, 299)                        -- beyond region2: brought to its edge at once
camera_at(660, 400, 461, 299, {speed = 0})
camera_at(700, 400, 501, 299, {region2 = -1, speed = 1})
camera_at(500, 400, 340, 300, {region1 = 70000})     -- no such number: no region
camera_at(500, 400, 340, 300, {region1 = 100})
camera_at(500, 400, 500, 400, {region1 = 60})        -- never defined: the screen's corner
camera_at(500, 400, 340, 300, {region1 = -1})
follow(510, 400, {region2 = 2, speed = 3})
frame()
same(scroll[0].x0, 346, "scroll_move and the drawing both move")
scroll[0].region2 = -1
define_region(4, 600, 600, 10, 10)                   -- a region that the destination does not reach
local there = follow(500, 400, {region1 = 4})
local here = follow(500, 400)
assert(there ~= here and follow(500, 400) == there, "a region off the destination makes the picture jump to and fro")
scroll[0].region1 = -1
kill(cam)
local x0 = scroll[0].x0
scroll[0].x0 = 5
scroll_move(0)
same(scroll[0].x0, 5, "x0 that nobody overwrote while the camera was gone")
scroll[0].camera = 0
scroll_move(0)
same(scroll[0].x0, 5, "x0 once there is no camera")

-- ---- What a start that fails does to a scroll that runs
fresh(1, 10, 0, -1, 0)
refused("error 112", scroll_start, 0, 1, 40, 41, -1, 0)
same(scroll_move(0), 1, "it goes on after 112")
refused("error 146", scroll_start, 0, 1, 10, 0, 3, 0)
same(scroll_move(0), 0, "it has stopped after 146")
fresh(1, 10, 11, -1, 0)

-- ---- A start keeps the fields, but for maps and positions
scroll[0].ratio, scroll[0].z = 70, 40
scroll_start(0, 1, 11, 0, -1, 0)
fields(0, {ratio = 70, z = 40, x0 = 0, y0 = 0, graph1 = 11})

-- ---- alpha and visible
fresh(1, 10, 0, -1, 0)
for value, kept in pairs {[300] = 255, [-5] = 0, [77] = 77} do
    scroll[0].alpha = value
    frame()
    same(scroll[0].alpha, kept, "alpha")
end
scroll[0].visible, scroll[0].x0 = 0, 33
frame(2)
same(scroll_offset(0), -100, "a hidden scroll stands still")
scroll[0].visible = -1
frame()
same(scroll_offset(0), -100, "so does one with a negative visible")
scroll[0].x0 = 40
scroll_move(0)
same(scroll_offset(0), -40, "but for scroll_move")
scroll[0].x0 = 33
scroll[0].visible = 5
frame()
frame()
same(scroll_offset(0), -33, "and goes on when it is seen again")

-- ---- scroll_refresh
fresh(1, 10, 0, -1, 0)
scroll[0].graph1 = 11
same(refresh_scroll(0), 1, "scroll_refresh")
scroll[0].graph1 = 0
same(scroll_refresh(all_scroll), 1, "scroll_refresh of all")
fields(0, {graph1 = 11})
scroll[0].graph2 = 12
same(scroll_refresh(0), 1, "no plane 2 appears"); fields(0, {graph2 = 12})
scroll[0].graph1 = 44
same(scroll_refresh(0), 0, "a map that does not exist")
refused("error 107, argument 1", scroll_refresh, 10)

-- ---- scroll_set_destination
new_map(1, 20, 100, 60, "#ffffff")
fresh(1, 10, 0, -1, 0)
same(scroll_set_destination(all_scroll, 0, 0, -1), 10, "all to the screen")
same(scroll_set_destination(0, 1, 0, -1), 0, "graph 0 of another file")
same(scroll_set_destination(0, 1, 45, -1), 0, "a destination that does not exist")
same(scroll_set_destination(0, 1, 20, 3), 0, "a region off the destination")
refused("error 131, argument 1", scroll_set_destination, 10, 0, 0, -1)
refused("error 109, argument 2", scroll_set_destination, 0, -1, 0, -1)
refused("error 110, argument 3", scroll_set_destination, 0, 1, -1, -1)
refused("error 108, argument 4", scroll_set_destination, 0, 1, 20, 77)
same(scroll_set_destination(0, 1, 20, -1), 1, "onto a map")
frame(2)
same(pixel(1, 20, 50, 30), pixel(1, 10, 150, 130), "the map shows the scroll")
scroll_stop(0)
same(scroll_start(0, 1, 12, 0, -1, 0), 0, "started again")
frame(2)
same(pixel(1, 20, 50, 30), pixel(1, 12, 0, 0), "a destination outlasts a stop")
same(scroll_start(1, 1, 20, 0, -1, 0), 1, "a scroll of the map that scroll 0 draws into")
unload_map(1, 12)
same(scroll_move(0), 0, "a map that has gone")
new_map(1, 12, 64, 48, "#00ffff")
same(scroll_refresh(0), 1, "another map in its place")
scroll[0].z = 600
new_map(1, 21, 320, 200)
scroll_set_destination(1, 1, 21, -1)
frame(2)
same(pixel(1, 20, 9, 9), pixel(1, 12, 0, 0), "scroll 0 draws its map")
assert(pixel(1, 21, 9, 9) ~= pixel(1, 20, 9, 9), "scroll 1 has not looked at it again")
scroll_refresh(1)
frame(2)
same(pixel(1, 21, 9, 9), pixel(1, 20, 9, 9), "now it has")
new_map(1, 22, 64, 48)                               -- keyed and empty: what was in the map stays
same(scroll_start(0, 1, 22, 0, -1, 0, scroll_normal_key), 0, "keyed")
frame(2)
same(pixel(1, 20, 9, 9), pixel(1, 12, 0, 0), "a keyed scroll does not clear its destination")
box(1, 20, 0, 0, 100, 60, 0)
frame(2)
same(pixel(1, 20, 9, 9), 0, "the script does")
scroll_set_destination(all_scroll, 0, 0, -1)

-- ---- scroll_stop, and what becomes of the processes
scroll_stop(all_scroll)
scroll_start(2, 1, 10, 0, -1, 0)
scroll_start(5, 1, 10, 0, -1, 0)
scroll[5].z, scroll[7].ratio = 3, 9
local in_two, in_all = process {ctype = c_scroll, scroll_mask = 4}, process {ctype = c_scroll}
local unseen = process {ctype = c_scroll, scroll_mask = 8}
same(scroll_stop(3), 0, "an idle scroll")
assert(exists(in_two) and exists(unseen))
same(stop_scroll(2), 1, "a running one")
assert(not exists(in_two) and not exists(unseen) and exists(in_all))
same(scroll_stop(all_scroll), 1, "the rest")
assert(not exists(in_all))
for n = 0, 9 do fields(n, defaults) end
refused("error 107, argument 1", scroll_stop, 10)
refused("error 107, argument 1", scroll_move, -2)

-- ---- Sprites: one that names no scroll with its mask is in all; the clip region lies in the world
if bpp > 8 then
    fresh(1, 10, 0, -1, 0)
    new_map(1, 30, 20, 20, "#ffffff")
    local white, red = pixel(1, 30, 0, 0), pixel(1, 10, 0, 0)
    scroll_set_destination(0, 1, 20, -1)
    local sprite = process {ctype = c_scroll, file = 1, graph = 30, x = 120, y = 120, z = 9, region = 5}
    define_region(5, 115, 110, 20, 20)
    frame(2)
    same(pixel(1, 20, 14, 20), red, "left of the clip region")
    same(pixel(1, 20, 15, 20), white, "inside the clip region")
    sprite.scroll_mask = 2
    frame(2)
    same(pixel(1, 20, 15, 20), red, "in no scroll that runs")
    same(map_size(1, 30), 20, "the picture is still there")
end

-- ---- What alpha reaches, in each mode: at 0 the front plane is gone, and nothing else
local function on_map_20(draw)                       -- the middle pixel of a blue map, once `draw` has set scrolls up for it
    scroll_stop(all_scroll)
    scroll_set_destination(all_scroll, 1, 20, -1)
    draw()
    box(1, 20, 0, 0, 100, 60, "#0000ff")
    frame(2)
    return pixel(1, 20, 50, 30) & 0xffffff            -- what was mixed carries no opacity in byte 3
end
local function sprite(z, more)
    local p = process {ctype = c_scroll, file = 1, graph = 30, z = z, x = scroll[0].x0 + 50, y = scroll[0].y0 + 30}
    for name, value in pairs(more or {}) do p[name] = value end
end
if bpp > 8 then
    local function plain(colour) return rgb(table.unpack(colour)) & 0xffffff end
    local red, green, blue, white = plain {255, 0, 0}, plain {0, 255, 0}, plain {0, 0, 255}, plain {255, 255, 255}
    for mode = 0, 3 do
        local layers = mode == scroll_layers or mode == scroll_layers_key
        for planes = 1, 2 do
            local function scene(alpha, sprite_z)
                return on_map_20(function()
                    scroll_start(0, 1, 10, planes == 2 and 11 or 0, -1, 0, mode)
                    scroll[0].alpha = alpha
                    if sprite_z then sprite(sprite_z) end
                end)
            end
            local beneath = planes == 2 and green or blue
            local what = ("mode %d, %d planes: "):format(mode, planes)
            same(scene(255), red, what .. "the front plane")
            same(scene(0), beneath, what .. "what is beneath the front plane")
            same(scene(0, 100), white, what .. "a sprite before the front plane")
            same(scene(0, 600), white, what .. "a deeper sprite")
            same(scene(255, 600), layers and red or white, what .. "a deeper sprite at alpha 255")
        end
    end
    same(on_map_20(function()
        scroll_start(0, 1, 10, 11, -1, 0)
        scroll[0].alpha = 0
        sprite(100, {alpha = 0})
    end), green, "a sprite fades by its own alpha")
    if bpp == 32 then
        new_map(1, 31, 1000, 800)
        set_alpha(1, 31, true)
        local function fog(alpha)
            return on_map_20(function() scroll_start(0, 1, 31, 0, -1, 0); scroll[0].alpha = alpha end)
        end
        same(fog(255), 0, "per-pixel alpha over black")
        same(fog(254), blue, "per-pixel alpha over what was drawn before")
    end

    -- ---- Overlapping scrolls: order by z, at equal z the lower number lies nearer; each divides its sprites at its own z
    local function overlapping(z0, z1, sprite_z)
        return on_map_20(function()
            scroll_start(0, 1, 11, 0, -1, 0, scroll_layers)
            scroll_start(1, 1, 10, 0, -1, 0, scroll_layers)
            scroll[0].z, scroll[1].z = z0, z1
            if sprite_z then sprite(sprite_z, {scroll_mask = 2, x = scroll[1].x0 + 50, y = scroll[1].y0 + 30}) end
        end)
    end
    same(overlapping(512, 511), red, "the smaller z is nearer")
    same(overlapping(511, 512), green, "the smaller z is nearer, the other way round")
    same(overlapping(512, 512), green, "equal z")
    same(overlapping(512, 511, 511), white, "a sprite of the scroll's own z")
    same(overlapping(512, 511, 100), white, "before both front planes")
    same(overlapping(512, 50, 100), red, "a sprite of 100 is behind the plane of a scroll of 50")
end
scroll_set_destination(all_scroll, 0, 0, -1)
