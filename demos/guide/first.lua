-- The first scroll: a map, something that moves, and a camera.
-- picture: end, frame 120
set_mode(480, 270, 32)
load_map(1, 10, "../art/dusk_walk.png")                  -- the map, 1440 x 400, as graph 10 of file 1
load_map(1, 20, "../art/lantern.png")
set_point(1, 10, 0, 0, 130)                              -- the scroll starts here: x 0, y 130
scroll_start(0, 1, 10, 0, -1, 0)                         -- scroll 0 shows it on the whole screen
local lantern = process(function(self)
    while true do self.x = self.x + 3; frame() end
end, {ctype = c_scroll, file = 1, graph = 20, x = 60, y = 250})
scroll[0].camera = lantern                               -- and follows the lantern
