-- Layers: with scroll_layers the front plane takes its turn among the sprites. Depth above scroll[0].z (512) is behind it, below
-- is in front of it: the birds fly behind the trees, the wanderer walks before them, and ferns stand before the wanderer.
-- picture: frame 130
local art = require "lib.art"
local wanderer = require "lib.wanderer"
local creatures = require "lib.creatures"
local hand = require "lib.hand"

art.screen(480, 270)
local world_w, front_h = art.load(10, "dusk_front")
local _, back_h = art.load(11, "dusk_back")
set_point(1, 10, 0, 380, front_h - 270)
set_point(1, 11, 0, 420, back_h - 270)
scroll_start(0, 1, 10, 11, -1, 4, scroll_layers)
scroll[0].ratio = 300

local land = wanderer.land()
scroll[0].camera = wanderer.new(20, land, 620)                       -- z 100
for i = 0, 6 do                                                      -- behind the front plane
    creatures.flier("bird", 640 - 47 * i, world_w, 376 + 13 * (i % 3), 4, {z = 600})
end
creatures.flier("owl", 1250, 500, 350, 2, {z = 600})
creatures.flier("owl", 1330, 500, 392, 2, {z = 300})                 -- in front of it
for i, x in ipairs {470, 700, 880, 1010, 1120, 1620, 1760} do        -- in front of the wanderer
    creatures.plant("fern", x, front_h + 8, {z = 50, size = 130 + 30 * (i % 3), flags = i % 2})
end
art.hint(hand {{0, "right", 400}, {36, "space", 4}, {68, "space", 4}, {260, "space", 4}})
art.caption(8, 250, "birds behind the trees, the wanderer before them")
