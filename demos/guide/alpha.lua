-- The scroll's alpha at each colour depth, which planes it reaches, and three ways to fade a scene.
-- picture: at_8, frame 60, 8 bits
-- picture: at_16, frame 60, 16 bits
-- picture: at_32, frame 60, 32 bits
-- picture: two_planes, frame 120
-- picture: scene, frame 180
local stage = require "lib.stage"
local art = require "lib.art"
local creatures = require "lib.creatures"

art.screen(360, 200)
art.load(10, "meadow_night")
art.load(11, "meadow_dusk")

-- Four strips of the dusk over the night, each a scroll with an alpha of its own.
local function strips()
    set_point(1, 10, 0, 320, 90)
    scroll_start(9, 1, 10, 0, -1, 0)
    scroll[9].z = 600
    local marks = stage.overlay()
    for n, alpha in ipairs {255, 170, 85, 0} do
        define_region(n, 90 * (n - 1), 0, 90, 200)
        set_point(1, 11, 0, 320 + 90 * (n - 1), 90)
        scroll_start(n, 1, 11, 0, n, 0)
        scroll[n].alpha = alpha
        stage.label(marks, 90 * (n - 1) + 24, 8, "alpha " .. alpha)
    end
    stage.caption(("%d bits"):format(art.depth))
end

local function two_planes()
    art.load(12, "dusk_front")
    art.load(13, "dusk_back")
    local marks = stage.overlay()
    for n, alpha in ipairs {255, 128} do
        define_region(n, 180 * (n - 1), 0, 180, 200)
        set_point(1, 12, 0, 620 + 180 * (n - 1), 240)
        set_point(1, 13, 0, 560 + 180 * (n - 1), 190)
        scroll_start(n, 1, 12, 13, n, 4)
        scroll[n].alpha = alpha
        stage.label(marks, 180 * (n - 1) + 64, 8, "alpha " .. alpha)
    end
    stage.caption "alpha reaches the front plane only"
end

-- The same scene three times before a blue still picture: two planes and two owls, one of them behind the trees.
local function whole_scene()
    local DEST = 30
    art.load(12, "dusk_front")
    art.load(13, "dusk_back")
    background("#2c5aa8")
    set_point(1, 12, 0, 650, 260)
    set_point(1, 13, 0, 700, 190)
    local first = creatures.frames("owl")
    local marks = stage.overlay()
    local function panel(n, destination, scroll_alpha, owl_alpha, ...)
        define_region(n, 120 * (n - 1), 0, 118, 200)
        if destination then
            new_map(1, DEST, 118, 200)
            scroll_set_destination(n, 1, DEST, -1)
        end
        scroll_start(n, 1, 12, 13, destination and -1 or n, 4, scroll_layers)
        scroll[n].alpha = scroll_alpha
        if destination then scroll[n].z = 590 end                -- drawn before what shows the map
        for i, z in ipairs {600, 100} do
            process {ctype = c_scroll, scroll_mask = 1 << n, file = 1, graph = first, x = 658 + 34 * i, y = 278 + 52 * i, z = z, alpha = owl_alpha}
        end
        for i, words in ipairs {...} do stage.label(marks, 120 * (n - 1) + 4, 166 + 14 * (i - 1), words) end
    end
    panel(1, false, 85, 255, "scroll[n].alpha 85")
    panel(2, false, 85, 85, "scroll[n].alpha 85", "owls: alpha 85")
    panel(3, true, 255, 255, "shown by a process", "of alpha 85")
    process {file = 1, graph = DEST, x = 240 + 59, y = 100, z = 580, alpha = 85}
end

stage.play {strips, two_planes, whole_scene}
