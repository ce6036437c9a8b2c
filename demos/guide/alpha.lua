-- The scroll's alpha at each colour depth, and which planes it reaches.
-- picture: at_8, frame 60, 8 bits
-- picture: at_16, frame 60, 16 bits
-- picture: at_32, frame 60, 32 bits
-- picture: two_planes, frame 120
local stage = require "lib.stage"
local art = require "lib.art"

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

stage.play {strips, two_planes}
