-- Split screen: two scrolls show the same world, each after its own camera. scroll_mask says which scroll shows a process: the
-- warm lights are seen on the left only, the fireflies on the right only, both wanderers in both.
-- picture: frame 152
local art = require "lib.art"
local wanderer = require "lib.wanderer"
local creatures = require "lib.creatures"
local hand = require "lib.hand"

art.screen(480, 270)
background("#2a1c30")
local world_w, front_h = art.load(10, "dusk_front")
local _, back_h = art.load(11, "dusk_back")
set_point(1, 11, 0, 300, back_h - 262)
local land = wanderer.land()

local function half(number, region_x, hero)
    define_region(10 + number, region_x, 4, 232, 262)
    set_point(1, 10, 0, hero.x - 116, front_h - 262)
    scroll_start(number, 1, 10, 11, 10 + number, 4)
    scroll[number].ratio = 300
    scroll[number].camera = hero
end

half(0, 4, wanderer.new(20, land, 520))
half(1, 244, wanderer.new(20, land, 1250, {left = "a", right = "d", jump = "w"}))
for x = 20, world_w, 26 do
    local y = land:ground_at(x) - 16 - 53 * x % 90
    if x % 4 == 0 then creatures.spark(x, y, {scroll_mask = 1}) else creatures.firefly(x, y, {scroll_mask = 2}) end
end
local both = hand {{10, "right", 180}, {30, "space", 4}, {62, "space", 4}, {96, "space", 4}, {20, "a", 90}, {60, "w", 4}, {150, "d", 200}, {143, "w", 4}}
art.hint(both, nil, 12, 250)
art.hint(both, "a and d walk, w jumps", 252, 250)
