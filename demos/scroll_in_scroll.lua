-- A scroll in a scroll: scroll 1 draws a winter's day into a map instead of the screen, and that map hangs as a picture in the
-- night through which scroll 0 walks. A larger z draws scroll 1 first, before its map is shown.
-- picture: frame 110
local art = require "lib.art"
local wanderer = require "lib.wanderer"
local creatures = require "lib.creatures"
local hand = require "lib.hand"

art.screen(480, 270)
local _, night_h = art.load(10, "meadow_night")
art.load(11, "meadow_winter")
set_point(1, 10, 0, 150, night_h - 270)
set_point(1, 11, 0, 0, 90)
scroll_start(0, 1, 10, 0, -1, 0)

local CANVAS, FRAME = 40, 41
new_map(1, CANVAS, 160, 108, rgb(20, 20, 40))
scroll_set_destination(1, 1, CANVAS, -1)             -- scroll 1 shall draw into the canvas
scroll_start(1, 1, 11, 0, -1, 0)
scroll[1].z = scroll[0].z + 100

art.load(FRAME, "gilded")
for _, x in ipairs {150, 512} do                     -- scroll_mask 1: in scroll 0 only
    process {ctype = c_scroll, file = 1, graph = CANVAS, x = x, y = 112, z = 300, scroll_mask = 1}
    process {ctype = c_scroll, file = 1, graph = FRAME, x = x, y = 112, z = 299, scroll_mask = 1}
end
for i = 1, 3 do creatures.flier("bird", -60 * i, 800, 170 + 12 * (i % 2), 3, {scroll_mask = 2}) end

local land = wanderer.land(560, 230)
scroll[0].camera = wanderer.new(20, land, 200, nil, {scroll_mask = 1})
for x = 30, 740, 34 do creatures.firefly(x, land:ground_at(x) - 20 - 37 * x % 70, {scroll_mask = 1}) end
art.hint(hand {{10, "right", 100}, {160, "left", 120}, {300, "right", 120}})
art.caption(8, 250, "in the frame: another scroll, drawn into a map")

while true do
    scroll[1].x0 = 300 - 300 * math.cos(frame_number() / 120)
    frame()
end
