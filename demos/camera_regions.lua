-- Camera regions: inside region1 (gold) the wanderer moves freely. Beyond it the scroll follows, but at most `speed` pixels a
-- move, until the wanderer reaches the edge of region2 (blue), which is never left.
-- picture: frame 98
local art = require "lib.art"
local wanderer = require "lib.wanderer"
local hand = require "lib.hand"

art.screen(480, 270)
local _, front_h = art.load(10, "dusk_front")
local _, back_h = art.load(11, "dusk_back")
set_point(1, 10, 0, 1440, front_h - 270)
set_point(1, 11, 0, 620, back_h - 270)
scroll_start(0, 1, 10, 11, -1, 4)
scroll[0].ratio = 300

local inner, outer = {190, 110, 100, 110}, {70, 40, 340, 200}
define_region(1, table.unpack(inner))
define_region(2, table.unpack(outer))
scroll[0].region1, scroll[0].region2, scroll[0].speed = 1, 2, 2      -- the wanderer walks 3 pixels a frame
scroll[0].camera = wanderer.new(20, wanderer.land(), 1600)
art.hint(hand {{10, "right", 90}, {20, "space", 4}, {60, "space", 4}, {170, "left", 120}, {200, "space", 4}, {330, "right", 200}})

-- The marks are a map of the screen, drawn over everything: corners and dashes.
new_map(1, 50, 480, 270)
local function mark(rect, colour, name)
    local x, y, w, h = table.unpack(rect)
    for _, c in ipairs {{x, y, 1, 1}, {x + w - 1, y, -1, 1}, {x, y + h - 1, 1, -1}, {x + w - 1, y + h - 1, -1, -1}} do
        for t = 0, 1 do
            line(1, 50, c[1], c[2] + t * c[4], c[1] + 14 * c[3], c[2] + t * c[4], colour)
            line(1, 50, c[1] + t * c[3], c[2], c[1] + t * c[3], c[2] + 14 * c[4], colour)
        end
    end
    for at = 22, w - 26, 10 do box(1, 50, x + at, y, 5, 1, colour); box(1, 50, x + at, y + h - 1, 5, 1, colour) end
    for at = 22, h - 26, 10 do box(1, 50, x, y + at, 1, 5, colour); box(1, 50, x + w - 1, y + at, 1, 5, colour) end
    art.caption(x + 4, y + h + 3, name)
end
mark(inner, "#ffd678", "region1")
mark(outer, "#a8e4ff", "region2")
process {file = 1, graph = 50, x = 240, y = 135, z = -100}
