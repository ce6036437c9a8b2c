-- A keyed plane over a still picture: where the map is transparent, what lies on the screen already stays visible.
-- picture: frame 60
local art = require "lib.art"
local creatures = require "lib.creatures"

art.screen(480, 270)
background(art.path("sea"))

local map_w = art.load(10, "dusk_front")              -- its sky is transparent
set_point(1, 10, 0, 1000, 204)
scroll_start(0, 1, 10, 0, -1, 0, scroll_normal_key)

for x = 1040, map_w, 60 do creatures.firefly(x, 400 - x % 50) end
creatures.flier("bird", 1100, 2600, 260, 4)
creatures.flier("bird", 1060, 2600, 276, 4)

art.caption(8, 250, "the map has no sky: a still picture shows through")

local step = 2
while true do                                        -- no camera: the script moves the plane itself, to and fro
    scroll[0].x0 = scroll[0].x0 + step
    if scroll[0].x0 >= map_w - 480 or scroll[0].x0 <= 0 then step = -step end
    frame()
end
