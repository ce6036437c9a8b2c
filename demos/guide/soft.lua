-- A map with per-pixel alpha: drawn opaque it lies on black, keyed it lies on what was there; at 16 bits each pixel is all or nothing.
-- picture: wrong, frame 60
-- picture: keyed, frame 120
-- picture: keyed_at_16, frame 120, 16 bits
local stage = require "lib.stage"
local art = require "lib.art"

art.screen(360, 200)
art.load(10, "meadow_dusk")
load_map(art.file, 12, art.folder .. "fog.png")      -- 512 x 160

local function fog(mode, words, colour)
    return function()
        set_point(1, 10, 0, 320, 90)
        scroll_start(0, 1, 10, 0, -1, 0)
        define_region(1, 0, 50, 360, 130)
        set_point(1, 12, 0, 60, 20)
        scroll_start(1, 1, 12, 0, 1, 1, mode)
        scroll[1].z = 400
        stage.caption(words, colour)
    end
end

stage.play {
    fog(scroll_normal, "wrong: scroll_normal puts the fog on black", "#ff6a6a"),
    fog(scroll_normal_key, ("scroll_normal_key, %d bits"):format(art.depth), "#ffd678"),
}
