-- A fade: `alpha` lets the dusk (scroll 1) melt into the night (scroll 0) behind it. At 8 bits alpha has no effect, so there the
-- dusk is switched off halfway.
-- picture: frame 120
local art = require "lib.art"
local wanderer = require "lib.wanderer"
local creatures = require "lib.creatures"
local hand = require "lib.hand"

art.screen(480, 270)
local _, map_h = art.load(10, "meadow_night")
art.load(11, "meadow_dusk")
local land = wanderer.land(560, 230)
local hero = wanderer.new(20, land, 130, nil, {scroll_mask = 2, z = -10})
for number = 0, 1 do
    set_point(1, 10 + number, 0, 0, map_h - 270)
    scroll_start(number, 1, 10 + number, 0, -1, 0)
    scroll[number].camera = hero
    scroll[number].z = 600 - 88 * number
end
hero.scroll_mask = 0
for x = 20, 740, 24 do creatures.firefly(x, land:ground_at(x) - 12 - 41 * x % 90) end
art.hint(hand {{5, "right", 160}, {60, "space", 4}, {190, "left", 170}})
art.caption(8, 250, function()
    if art.depth == 8 then return "at 8 bits alpha does nothing: the dusk switches off" end
    return ("dusk before night: alpha %d"):format(scroll[1].alpha)
end)

while true do
    local t = frame_number()
    scroll[1].alpha = 128 + 190 * math.cos(t / 76)   -- what lies outside 0 to 255 is clamped
    if art.depth == 8 then scroll[1].visible = scroll[1].alpha > 127 end
    frame()
end
