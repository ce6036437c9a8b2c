-- A walk at dusk: two planes at different speeds, a camera with an inner and an outer region, birds behind the trees and
-- ferns before the wanderer, all inside a window frame that stays outside the scroll. Runs at 8, 16 and 32 bits.
-- picture: frame 400
local art = require "lib.art"
local wanderer = require "lib.wanderer"
local creatures = require "lib.creatures"
local hand = require "lib.hand"

local WIDTH, HEIGHT = art.screen(640, 360)
local VIEW = {x = 20, y = 18, w = 600, h = 296}
local FRONT, BACK, WINDOW, HERO = 10, 11, 12, 20
local VIEW_REGION, INNER, OUTER = 1, 2, 3

-- The maps, and where each plane starts: the reference point is the world position of the view's top left corner.
local world_w, world_h = art.load(FRONT, "dusk_front")
local _, back_h = art.load(BACK, "dusk_back")
set_point(1, FRONT, 0, 0, world_h - VIEW.h)
set_point(1, BACK, 0, 0, back_h - VIEW.h)

-- The view is smaller than the screen. The camera moves freely in the inner region; in the outer one the scroll follows
-- it at `speed`; it never leaves the outer one.
define_region(VIEW_REGION, VIEW.x, VIEW.y, VIEW.w, VIEW.h)
define_region(INNER, 250, 112, 120, 112)
define_region(OUTER, 120, 60, 400, 220)

-- Front plane in layers with the sprites; the back plane repeats sideways (4).
scroll_start(0, 1, FRONT, BACK, VIEW_REGION, 4, scroll_layers)
scroll[0].ratio = 300
scroll[0].region1, scroll[0].region2, scroll[0].speed = INNER, OUTER, 4

local land = wanderer.land()
local hero = wanderer.new(HERO, land, 200)
scroll[0].camera = hero

-- Behind the front plane (larger z than the scroll's 512) ...
for i = 0, 4 do creatures.flier("bird", 60 - 46 * i, world_w + 80, 262 + 17 * (i % 3), 3) end
for i = 0, 3 do creatures.flier("bird", 1250 + 40 * i, -60, 300 + 14 * (i % 2), 2) end
creatures.flier("owl", 1500, 300, 316, 2)
creatures.flier("owl", 2300, 900, 330, 1)
-- ... and before it.
creatures.flier("bird", 900, -300, 372, 4, {z = 70})
creatures.flier("bird", 2500, 0, 360, 3, {z = 70})
for _, x in ipairs {240, 600, 880, 1090, 1580, 1800, 2140, 2400} do creatures.butterfly(x, land:ground_at(x) - 40) end
for i = 1, 70 do
    local x = math.random(40, world_w - 40)
    creatures.firefly(x, land:ground_at(x) - math.random(6, 110), {z = i % 3 == 0 and 560 or 60})
end
for i, x in ipairs {20, 330, 560, 800, 1020, 1620, 1760, 2110, 2380, 2520} do
    creatures.plant("fern", x, world_h + 14, {size = 150 + 40 * (i % 2), flags = i % 2})
end
for _, x in ipairs {1170, 1226, 1452, 1512} do creatures.plant("reeds", x, world_h) end

-- Seven lights wait on the ledges; each that is found lights a lantern on the board below the view.
local lantern = creatures.picture("lantern")
local function light(number, x, y)
    local spark = creatures.spark(x, y)
    while math.abs(hero.x - x) > 20 or math.abs(hero.y - 20 - y) > 34 do frame() end
    kill(spark)
    process {file = 1, graph = lantern, x = VIEW.x + 16 + 26 * number, y = 334, z = -200}
end
local found = {{364, 368}, {670, 326}, {771, 280}, {874, 234}, {1340, 408}, {1710, 358}, {1811, 310}}
for number, at in ipairs(found) do process(function() light(number, at[1], at[2]) end) end

-- The window frame: a picture of the screen, in front of all.
art.load(WINDOW, "window")
process {file = 1, graph = WINDOW, x = WIDTH // 2, y = HEIGHT // 2, z = -100}
art.caption(VIEW.x + 250, 327, "a walk at dusk: find the seven lights")
art.caption(VIEW.x + 250, 341, function() return ("front %4d   back %4d"):format(scroll[0].x0, scroll[0].x1) end)

local walk = hand {
    {16, "right", 573}, {44, "space", 4}, {140, "space", 4}, {178, "space", 4}, {212, "space", 4},
    {316, "space", 4}, {390, "space", 4}, {500, "space", 4}, {528, "space", 4}, {557, "space", 4},
}
art.hint(walk, nil, VIEW.x + 438, 341)
