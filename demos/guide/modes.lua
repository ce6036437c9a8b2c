-- The four drawing modes, with one plane and with two: the same night each time. The moon is a still picture behind the scroll;
-- of the owls the left one is deeper (z 600) than the scroll (z 512), the right one nearer (z 400).
-- picture: one_normal, frame 60
-- picture: one_layers, frame 120
-- picture: one_normal_key, frame 180
-- picture: one_layers_key, frame 240
-- picture: two_normal, frame 300
-- picture: two_layers, frame 360
-- picture: two_normal_key, frame 420
-- picture: two_layers_key, frame 480
local stage = require "lib.stage"
local art = require "lib.art"
local creatures = require "lib.creatures"

art.screen(480, 270)
art.load(10, "depth9")                               -- pines, transparent above
art.load(11, "depth6")                               -- hills, transparent above
set_point(1, 10, 0, 120, 0)
set_point(1, 11, 0, 60, 0)

local function scene(mode, name, graph2)
    return function()
        background(art.path("depth0"))
        scroll_start(0, 1, 10, graph2, -1, 1 + 4, mode)
        creatures.flier("owl", 186, 187, 205, 1, {z = 600, size = 190})
        creatures.flier("owl", 552, 553, 205, 1, {z = 400, size = 190})
        local labels = stage.overlay()
        stage.label(labels, 50, 156, "z 600")
        stage.label(labels, 416, 156, "z 400")
        stage.caption(name .. (graph2 == 0 and ", one plane" or ", two planes"))
    end
end

local scenes = {}
for _, graph2 in ipairs {0, 11} do
    scenes[#scenes + 1] = scene(scroll_normal, "scroll_normal", graph2)
    scenes[#scenes + 1] = scene(scroll_layers, "scroll_layers", graph2)
    scenes[#scenes + 1] = scene(scroll_normal_key, "scroll_normal_key", graph2)
    scenes[#scenes + 1] = scene(scroll_layers_key, "scroll_layers_key", graph2)
end
stage.play(scenes)
