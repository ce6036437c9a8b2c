-- Per-pixel alpha: three banks of fog, each a keyed scroll in its own region, drift over the evening at 32 bits. Where a depth
-- has no alpha the fog is a dithered veil.
-- picture: frame 100
local art = require "lib.art"
local wanderer = require "lib.wanderer"
local hand = require "lib.hand"

art.screen(480, 270)
local _, front_h = art.load(10, "dusk_front")
local _, back_h = art.load(11, "dusk_back")
set_point(1, 10, 0, 1900, front_h - 270)
set_point(1, 11, 0, 560, back_h - 270)
scroll_start(0, 1, 10, 11, -1, 4)
scroll[0].ratio = 300
scroll[0].camera = wanderer.new(20, wanderer.land(), 2080, nil, {scroll_mask = 1})
art.hint(hand {{10, "right", 100}, {50, "space", 4}, {130, "left", 120}})

art.load_soft(12, "fog")                             -- 512 x 160
local banks = {{y = 20, z = 300, pace = 1}, {y = 70, z = 200, pace = -1}, {y = 110, z = 100, pace = 2}}
for i, bank in ipairs(banks) do
    define_region(i, 0, bank.y, 480, 160)
    set_point(1, 12, 0, 170 * i, 0)
    scroll_start(i, 1, 12, 0, i, 1, scroll_normal_key)
    scroll[i].z = bank.z
end

art.caption(8, 250, art.depth == 32 and "fog: each pixel has an alpha of its own"
            or ("at %d bits a pixel has no alpha: the fog is dots"):format(art.depth))

while true do
    for i, bank in ipairs(banks) do scroll[i].x0 = scroll[i].x0 + bank.pace end
    frame()
end
