-- Keyed layers: the back plane is keyed too, so a still sky shows through both planes, and owls fly between them.
-- picture: frame 100
local art = require "lib.art"
local creatures = require "lib.creatures"

art.screen(480, 270)
background(art.path("depth0"))
art.load(10, "depth9")
art.load(11, "depth5")
scroll_start(0, 1, 10, 11, -1, 1 + 4, scroll_layers_key)

creatures.flier("owl", 260, math.huge, 92, 4, {z = 600, size = 70, met_by = 0})
creatures.flier("owl", 196, math.huge, 196, 4, {z = 600, size = 130, met_by = 0})     -- behind the near pines
creatures.flier("owl", 0, math.huge, 184, 4, {z = 400, size = 170, met_by = 0})      -- in front of them
for i = 1, 34 do creatures.firefly(20 * i, 190 + 37 * i % 60, {z = i % 2 == 0 and 600 or 400, met_by = 0}) end
art.caption(8, 250, "a still sky, two keyed planes before it, owls in between")

while true do
    scroll[0].x0 = scroll[0].x0 + 3
    if frame_number() % 2 == 0 then scroll[0].x1 = scroll[0].x1 + 1 end
    frame()
end
