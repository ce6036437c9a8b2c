-- A scene for the inspector: a view that does not fill the screen, a camera between its two regions, a back plane that repeats,
-- and a butterfly that is seen through a window of the world.
-- picture: scene, frame 112, inspected
require "lib.stage"                                      -- finds the libraries of the demos
local art = require "lib.art"
local wanderer = require "lib.wanderer"
local creatures = require "lib.creatures"
local hand = require "lib.hand"

art.screen(480, 270)
background("#2a1c30")
local _, front_h = art.load(10, "dusk_front")
local _, back_h = art.load(11, "dusk_back")
define_region(1, 20, 16, 440, 238)
set_point(1, 10, 0, 330, front_h - 238)
set_point(1, 11, 0, 1000, back_h - 238)
scroll_start(0, 1, 10, 11, 1, 4, scroll_layers)
scroll[0].ratio = 200

define_region(2, 180, 96, 120, 118)
define_region(3, 70, 40, 340, 200)
scroll[0].region1, scroll[0].region2, scroll[0].speed = 2, 3, 2
scroll[0].camera = wanderer.new(20, wanderer.land(), 520)
hand {{10, "right", 400}, {60, "space", 4}}

local first = creatures.frames("butterfly")
define_region(4, 640, 330, 70, 90)
process {ctype = c_scroll, file = 1, graph = first, x = 690, y = 370, z = 90, size = 300, region = 4}
for x = 560, 1000, 60 do creatures.firefly(x, 330 + 37 * x % 90) end
