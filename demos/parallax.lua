-- Parallax: two planes, the back one slower. With a ratio of 300 it moves one pixel for three of the front plane.
-- picture: frame 200
local art = require "lib.art"
local wanderer = require "lib.wanderer"
local hand = require "lib.hand"

art.screen(480, 270)
local _, front_h = art.load(10, "dusk_front")
local _, back_h = art.load(11, "dusk_back")
set_point(1, 10, 0, 1000, front_h - 270)
set_point(1, 11, 0, 540, back_h - 270)
scroll_start(0, 1, 10, 11, -1, 4)                    -- 4: the back plane repeats sideways
scroll[0].ratio = 300

local hero = wanderer.new(20, wanderer.land(), 1240)
scroll[0].camera = hero
art.hint(hand {{0, "right", 150}, {40, "space", 4}, {170, "left", 300}, {230, "space", 4}})

art.caption(8, 236, "two maps: the back one moves 1 pixel for 3 of the front one")
art.caption(8, 250, function() return ("front %d   back %d"):format(scroll[0].x0, scroll[0].x1) end)
