-- Processes of a scroll: the clip region of a process is a rectangle of the world, and scroll_mask says which scrolls show it.
-- picture: clip, frame 60
-- picture: clip_wrong, frame 120
-- picture: mask, frame 180
local stage = require "lib.stage"
local art = require "lib.art"
local creatures = require "lib.creatures"

art.screen(480, 270)
art.load(10, "meadow_winter")
art.load(11, "meadow_night")
local first = creatures.frames("owl")
local GOLD, RED = "#ffd678", "#ff6a6a"

-- A big owl behind a window of the world, at world (440, 150).
local function window(x, y, w, h, words, colour)
    set_point(1, 10, 0, 220, 30)
    scroll_start(0, 1, 10, 0, -1, 0)
    define_region(1, x, y, w, h)
    process {ctype = c_scroll, file = 1, graph = first, x = 440, y = 150, z = 100, size = 260, region = 1}
    local marks = stage.overlay()
    stage.outline(marks, x - scroll[0].x0, y - scroll[0].y0, w, h, colour)
    stage.caption(words, colour)
end

local function mask()
    background("#2a1c30")
    for n = 0, 1 do
        define_region(1 + n, 4 + 240 * n, 4, 232, 262)
        set_point(1, 10 + n, 0, 220, 30)
        scroll_start(n, 1, 10 + n, 0, 1 + n, 0)
    end
    local marks = stage.overlay()
    for i, place in ipairs {"0", "1", "2"} do
        local y = 90 + 60 * (i - 1)
        process {ctype = c_scroll, file = 1, graph = first, x = 340, y = y, z = 100, size = 150, scroll_mask = i - 1}
        for n = 0, 1 do
            if i == 1 or i == n + 2 then stage.label(marks, 12 + 240 * n, y - 34, "scroll_mask " .. place) end
        end
    end
    stage.label(marks, 10, 250, "scroll 0")
    stage.label(marks, 250, 250, "scroll 1")
end

stage.play {
    function() window(402, 122, 64, 64, "region 1 in world coordinates: 402, 122", GOLD) end,
    function() window(182, 92, 64, 64, "wrong: region 1 where it should be on the screen", RED) end,
    mask,
}
