-- An endless sky: scroll 1 is the sky, drifts by itself and repeats; scroll 0 in front of it is keyed and follows the wanderer.
-- picture: drifting, frame 120
local stage = require "lib.stage"
local art = require "lib.art"
local wanderer = require "lib.wanderer"
local hand = require "lib.hand"

art.screen(480, 270)
local _, front_h = art.load(10, "dusk_front")
local _, back_h = art.load(11, "dusk_back")
set_point(1, 10, 0, 300, front_h - 270)
set_point(1, 11, 0, 0, back_h - 330)

scroll_start(0, 1, 10, 0, -1, 0, scroll_normal_key)
scroll_start(1, 1, 11, 0, -1, 1)                     -- 1: repeats across
scroll[1].z = scroll[0].z + 100                      -- deeper: drawn first
scroll[0].camera = wanderer.new(20, wanderer.land(), 480, nil, {scroll_mask = 1})
hand {{0, "right", 90}, {30, "space", 4}}
while true do
    scroll[1].x0 = scroll[1].x0 - 1
    frame()
end
