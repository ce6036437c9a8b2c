-- Ten scrolls, one behind the other: a sky and nine keyed layers. The nearer a layer, the smaller its z and the larger its step.
-- picture: frame 200
local art = require "lib.art"
local creatures = require "lib.creatures"

art.screen(480, 270)
for n = 0, 9 do
    art.load(10 + n, "depth" .. n)
    scroll_start(n, 1, 10 + n, 0, -1, 1, n == 0 and scroll_normal or scroll_normal_key)
    scroll[n].z = 900 - 80 * n
end

-- Owls between the layers: each is shown by one scroll only, and drawn right after that scroll's plane.
creatures.flier("owl", 200, math.huge, 104, 2, {scroll_mask = 1 << 4, size = 60, met_by = 4})
creatures.flier("owl", -110, math.huge, 150, 3, {scroll_mask = 1 << 6, size = 90, met_by = 6})
creatures.flier("owl", 150, math.huge, 186, 4, {scroll_mask = 1 << 8, size = 150, met_by = 8})

art.caption(8, 250, "ten scrolls: a sky and nine layers, each at its own pace")

-- Positions are whole pixels; the steps of a layer add up in a number with a fraction.
while true do
    for n = 1, 9 do scroll[n].x0 = math.floor(frame_number() * 0.06 * n ^ 1.9) end
    frame()
end
