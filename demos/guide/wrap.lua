-- What happens at the edge of a map: without a flag the plane stops there, with flag 1 (across) or 2 (down) it goes on with the
-- other side, and a map smaller than the view repeats whatever the flags say. The light line marks the map's edges.
-- picture: stops, frame 60
-- picture: across, frame 120
-- picture: down, frame 180
-- picture: small, frame 240
local stage = require "lib.stage"
local art = require "lib.art"

art.screen(360, 200)
local WIDTH, HEIGHT = art.load(10, "meadow_dusk")
art.load(11, "pond")
for _, graph in ipairs {10, 11} do
    local width, height = map_size(1, graph)
    for _, edge in ipairs {{0, 0, width, 1}, {0, height - 1, width, 1}, {0, 0, 1, height}, {width - 1, 0, 1, height}} do
        box(1, graph, edge[1], edge[2], edge[3], edge[4], "#ffe6b8")
    end
end

-- The script asks for the position (x, y); the caption tells where the plane is.
local function scene(graph, flags, x, y)
    return function()
        scroll_start(0, 1, graph, 0, -1, flags)
        scroll[0].x0, scroll[0].y0 = x, y
        local marks = stage.overlay()
        stage.label(marks, 7, 170, ("flags %d, x0, y0 set to %d, %d"):format(flags, x, y))
        art.caption(7, 184, function() return ("they read %d, %d"):format(scroll[0].x0, scroll[0].y0) end)
    end
end

stage.play {
    scene(10, 0, WIDTH - 200, HEIGHT - 140), scene(10, 1, WIDTH - 200, HEIGHT - 140), scene(10, 2, WIDTH - 200, HEIGHT - 140),
    scene(11, 0, -1000, 2000),
}
