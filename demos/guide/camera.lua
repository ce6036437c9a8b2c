-- The camera and its regions: what each setting looks like, settings that go wrong, and their cures. Region outlines are drawn on
-- the screen, where regions live; the cross is the camera point.
-- picture: centred, frame 60
-- picture: region1, frame 120
-- picture: region2, frame 180
-- picture: wrong_coordinates, frame 240
-- picture: right_coordinates, frame 300
-- picture: slow, frame 360
-- picture: quick, frame 420
-- picture: speed_alone, frame 480
-- picture: speed_in_region2, frame 540
-- picture: ratio_lost, frame 600
-- picture: ratio_whole, frame 660
-- picture: world_even, frame 720
-- picture: world_odd, frame 780
local stage = require "lib.stage"
local art = require "lib.art"
local wanderer = require "lib.wanderer"
local hand = require "lib.hand"

art.screen(480, 270)
local _, front_h = art.load(10, "dusk_front")
local _, back_h = art.load(11, "dusk_back")
local land = wanderer.land()
local GOLD, BLUE, RED = "#ffd678", "#a8e4ff", "#ff6a6a"

local focus                                          -- the process that the camera follows

-- The wanderer stands at world x 1340; the plane starts with its left edge at `left`.
local function start(left, view_h, region)
    set_point(1, 10, 0, left, front_h - (view_h or 270))
    set_point(1, 11, 0, 540, back_h - (view_h or 270))
    scroll_start(0, 1, 10, 11, region or -1, 4)
    scroll[0].ratio = 300
    local hero = wanderer.new(20, land, 1340)
    scroll[0].camera = hero
    local cross = stage.cross(GOLD)
    process(function()
        while true do
            local dx, dy = scroll_offset(0)
            cross.x, cross.y = focus.x + dx, focus.y + dy
            frame()
        end
    end)
    focus = hero
    return hero
end

local function region(n, x, y, w, h, colour, words)
    define_region(n, x, y, w, h)
    local marks = stage.overlay()
    stage.outline(marks, x, y, w, h, colour)
    stage.label(marks, x + 5, y + 5, words or "region" .. n, colour)
end

local function walk(way) hand {{0, way or "right", 1000}} end

local function centred()
    start(1100)
    walk()
    stage.caption "no regions: the camera stays in the middle"
end

local function inner()
    start(1120)
    region(1, 160, 70, 160, 140, GOLD)
    scroll[0].region1 = 1
    walk()
    stage.caption "region1: the scroll moves when the camera reaches its edge"
end

local function follow(words, speed, left, x2)
    start(left)
    region(1, 190, 70, 100, 140, GOLD)
    region(2, 80, 30, x2 - 80, 220, BLUE)
    scroll[0].region1, scroll[0].region2, scroll[0].speed = 1, 2, speed
    walk()
    stage.caption(words)
end

-- A view that does not begin at the screen's corner shows which coordinates a region is given in.
local function framed(x, words, colour)
    background("#2a1c30")
    define_region(9, 170, 24, 290, 216)
    start(1200, 216, 9)
    scroll[0].z = 600
    region(1, x, 70, 100, 120, colour)
    scroll[0].region1 = 1
    walk()
    stage.caption(words, colour)
end

local function leap(words, colour, with_region2)
    local hero = start(1100)
    if with_region2 then
        region(2, 10, 10, 460, 240, BLUE)
        scroll[0].region2 = 2
    end
    scroll[0].speed = 4
    process(function()
        frame(50)
        hero.x = hero.x + 150
    end)
    stage.caption(words, colour)
end

local function pace(step, colour)
    kill(start(1100))
    local x, back = scroll[0].x0, scroll[0].x1
    scroll[0].ratio = 200
    focus = process(function(self)
        while true do
            self.x = self.x + step
            frame()
        end
    end, {ctype = c_scroll, x = 1340, y = 400})
    scroll[0].camera = focus
    stage.caption(("ratio 200, camera %d pixel%s a frame:"):format(step, step == 1 and "" or "s"), colour)
    art.caption(270, 255, function() return ("front moved %d, back moved %d"):format(scroll[0].x0 - x, scroll[0].x1 - back) end)
end

local function in_world(words)
    start(1100)
    define_region(1, 1290, 340, 100, 100)
    scroll[0].region1 = 1
    stage.caption(words, RED)
end

stage.play {
    centred, inner,
    function() follow("region1, region2 and speed 2, the camera walks 3", 2, 1070, 400) end,
    function() framed(70, "wrong: region1 counted from the corner of the view", RED) end,
    function() framed(70 + 170 + 25, "cure: counted from the corner of the screen", GOLD) end,
    function() follow("wrong: speed 1 for a camera that walks 3", 1, 1020, 400) end,
    function() follow("cure: speed 3", 3, 1020, 400) end,
    function() leap("speed 4 without region2: no limit", RED) end,
    function() leap("speed 4 within region2: gliding there", GOLD, true) end,
    function() pace(1, RED) end,
    function() pace(2, GOLD) end,
    function() in_world "wrong: region1 in world coordinates: one frame here ..." end,
    function()
        frame()
        in_world "... and the next frame there"
    end,
}
