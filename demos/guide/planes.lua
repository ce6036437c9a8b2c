-- What a scroll is made of: two maps, a view on each of them, and the picture that the player sees.
-- picture: made_of, frame 60
-- picture: coordinates, frame 120
local stage = require "lib.stage"
local art = require "lib.art"
local wanderer = require "lib.wanderer"

art.screen(480, 270)
local _, front_h = art.load(10, "dusk_front")
art.load(11, "dusk_back")
local land = wanderer.land()
local GOLD, BLUE = "#ffd678", "#a8e4ff"

-- The whole map at a fraction of its size, with the outline of the part (x, y, w, h) that a view shows.
local function small(graph, left, top, percent, x, y, w, h, colour)
    local width, height = map_size(art.file, graph)
    set_point(art.file, graph, 0, 0, 0)
    process {file = art.file, graph = graph, x = left, y = top, z = 10, size_x = percent, size_y = percent}
    local function scaled(value) return value * percent // 100 end
    local marks = stage.overlay()
    stage.outline(marks, left, top, scaled(width), scaled(height), "#706080")
    stage.outline(marks, left + scaled(x), top + scaled(y), scaled(w), scaled(h), colour)
    return marks
end

local function made_of()
    background("#2a1c30")
    local view = {x = 252, y = 138, w = 218, h = 112}
    define_region(1, view.x, view.y, view.w, view.h)
    local front, back = {x = 1080, y = front_h - 154}, {x = 560, y = 232}
    set_point(1, 10, 0, front.x, front.y)
    set_point(1, 11, 0, back.x, back.y)
    scroll_start(0, 1, 10, 11, 1, 4)
    wanderer.new(20, land, front.x + 110)
    local marks = small(10, 10, 8, 18, front.x, front.y, view.w, view.h, GOLD)
    stage.label(marks, 13, 109, "plane 1: the front map", GOLD)
    stage.arrow(marks, 226, 100, 250, 136, GOLD)
    marks = small(11, 10, 138, 18, back.x, back.y, view.w, view.h, BLUE)
    stage.label(marks, 13, 221, "plane 2: the back map", BLUE)
    stage.arrow(marks, 153, 190, 247, 190, BLUE)
    stage.outline(marks, view.x - 1, view.y - 1, view.w + 2, view.h + 2, "#ffe6b8")
    stage.label(marks, view.x + 3, view.y + view.h + 6, "the view: plane 1 over plane 2")
end

local function coordinates()
    background("#2a1c30")
    art.load(12, "meadow_dusk")                      -- 760 x 300, cut out of the world at 560, 230
    local meadow = wanderer.land(560, 230)
    local view = {x = 260, y = 60, w = 200, h = 150}
    define_region(1, view.x, view.y, view.w, view.h)
    local corner = {x = 320, y = 110}
    set_point(1, 12, 0, corner.x, corner.y)
    scroll_start(0, 1, 12, 0, 1, 0)
    local hero = wanderer.new(20, meadow, corner.x + 80)
    local dot = stage.cross("#ff9a9a")
    dot.x, dot.y = hero.x + view.x - corner.x, hero.y + view.y - corner.y
    local marks = small(12, 8, 90, 30, corner.x, corner.y, view.w, view.h, GOLD)
    stage.label(marks, 10, 75, "world 0, 0")
    stage.label(marks, 96, 58, ("x0, y0 = %d, %d"):format(corner.x, corner.y), GOLD)
    stage.arrow(marks, 104, 70, 104, 121, GOLD)
    stage.outline(marks, view.x - 1, view.y - 1, view.w + 2, view.h + 2, GOLD)
    stage.label(marks, view.x + 2, view.y - 14, ("the view begins at screen %d, %d"):format(view.x, view.y), GOLD)
    stage.label(marks, 7, 7, "screen 0, 0")
    stage.label(marks, dot.x - 28, dot.y + 14, ("world %d, %d"):format(hero.x, hero.y), "#ff9a9a")
    stage.label(marks, dot.x - 28, dot.y + 28, ("screen %d, %d"):format(dot.x, dot.y), "#ff9a9a")
    stage.caption "screen = world - (x0, y0) + the view's corner"
end

stage.play {made_of, coordinates}
