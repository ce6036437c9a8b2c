-- Refresh: the script names another map in scroll[n].graph1. The scroll goes on showing the old one until scroll_refresh: on the
-- left it is called and the seasons change, on the right it is not.
-- picture: frame 130
local art = require "lib.art"

art.screen(480, 270)
background("#2a1c30")
art.load(10, "meadow_dusk")
art.load(11, "meadow_winter")
art.load(12, "meadow_night")

for number = 0, 1 do
    define_region(number + 1, 4 + 240 * number, 4, 232, 262)
    set_point(1, 10, 0, 150 + 240 * number, 30)
    scroll_start(number, 1, 10, 0, number + 1, 0)
end
art.caption(10, 250, "scroll_refresh(0) called")
art.caption(250, 250, "not called for scroll 1")

while true do
    for season = 0, 2 do
        scroll[0].graph1, scroll[1].graph1 = 10 + season, 10 + season
        scroll_refresh(0)
        frame(100)
    end
end
