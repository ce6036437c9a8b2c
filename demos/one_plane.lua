-- One plane: a map larger than the screen, and a camera that the scroll keeps in the middle.
-- picture: frame 150
local art = require "lib.art"
local wanderer = require "lib.wanderer"
local creatures = require "lib.creatures"
local hand = require "lib.hand"

art.screen(480, 270)
local map_w, map_h = art.load(10, "dusk_walk")
set_point(1, 10, 0, 0, map_h - 270)                 -- where the scroll starts
scroll_start(0, 1, 10, 0, -1, 0)                    -- no second map, the whole screen, nothing repeats

local land = wanderer.land(470, 140)                -- the part of the dusk world that this map shows
scroll[0].camera = wanderer.new(20, land, 60)
for x = 90, map_w, 110 do creatures.firefly(x, land:ground_at(x) - 40) end
creatures.butterfly(330, land:ground_at(330) - 50)

art.hint(hand {{10, "right", 600}, {53, "space", 4}, {86, "space", 4}, {120, "space", 4}, {250, "space", 4}})
art.caption(8, 250, "a map larger than the screen: the view follows him")
