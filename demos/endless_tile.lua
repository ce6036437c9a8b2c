-- An endless pond: a map smaller than the view repeats in both directions, and positions may grow or turn negative without end.
-- picture: frame 98
local art = require "lib.art"
local creatures = require "lib.creatures"

art.screen(480, 270)
art.load(10, "pond")                                 -- 176 x 176
scroll_start(0, 1, 10, 0, -1, 0)                     -- no flags needed: it is smaller than the view

-- A butterfly wanders off for ever; its shadow lies on the water.
local first, count = creatures.frames("butterfly")
local shadow = process {ctype = c_scroll, file = 1, z = 95, alpha = 110, size = 190}
scroll[0].camera = process(function(self)
    local t = 0
    while true do
        t = t + 1
        self.x, self.y = -2 * t, -t + 40 * math.sin(t / 60) - 9 * math.abs(math.sin(t / 9))
        self.graph = first + t // 4 % count
        shadow.x, shadow.y, shadow.graph = self.x + 18, self.y + 30, self.graph
        frame()
    end
end, {ctype = c_scroll, file = 1, z = 90, size = 200})

art.caption(8, 250, function() return ("176 x 176 pixels without end: position %d, %d"):format(scroll[0].x0, scroll[0].y0) end)
