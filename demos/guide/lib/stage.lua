-- What the pictures of the guide share: the art and helpers of the demos, scenes one after the other, outlines and labels.
local _, file = ...
local here = file:match("^(.*/)lib/") or ""
package.path = package.path .. ";" .. here .. "../?.lua"

local art = require "lib.art"
art.folder = "../art/"

local stage = {LENGTH = 60}                -- frames that each scene lasts; its last frame is its picture
local MARKS = 900                          -- graph codes of the maps for outlines and labels
local main = processes()[1]
local marks = 0

local function clear()
    scroll_stop(all_scroll)
    for _, p in ipairs(processes()) do if p ~= main then kill(p) end end
    for n = 0, 9 do scroll_set_destination(n, 0, 0, -1) end
    for _, name in ipairs {"left", "right", "space", "a", "d", "w"} do release(name) end
    for n = 1, 99 do undefine_region(n) end
    background()
    marks = 0
end

-- Plays the scenes for ever: each is a function that sets everything up on a cleared stage.
function stage.play(scenes)
    while true do
        for _, scene in ipairs(scenes) do
            clear()
            math.randomseed(1)
            scene()
            frame(stage.LENGTH)
        end
    end
end

-- A fresh map of the screen's size that is drawn over everything.
function stage.overlay()
    marks = marks + 1
    local width, height = screen_size()
    new_map(art.file, MARKS + marks, width, height)
    process {file = art.file, graph = MARKS + marks, x = width // 2, y = height // 2, z = -200}
    return MARKS + marks
end

local function dash(graph, x, y, w, h, colour)
    for at = 0, math.max(w, h) - 1, 8 do
        local length = math.min(5, math.max(w, h) - at)
        if h == 1 then box(art.file, graph, x + at, y, length, 1, colour) else box(art.file, graph, x, y + at, 1, length, colour) end
    end
end

-- The edges of a rectangle, dashed on dark; `graph` is the map drawn into.
function stage.outline(graph, x, y, w, h, colour)
    for _, edge in ipairs {{x, y, w, 1}, {x, y + h - 1, w, 1}, {x, y, 1, h}, {x + w - 1, y, 1, h}} do
        box(art.file, graph, edge[1], edge[2], edge[3], edge[4], "#181028")
        dash(graph, edge[1], edge[2], edge[3], edge[4], colour)
    end
end

-- Text on a dark plate, its top left corner at (x, y).
function stage.label(graph, x, y, words, colour)
    local width, height = text_size(words)
    box(art.file, graph, x - 3, y - 2, width + 6, height + 4, "#181028")
    map_text(art.file, graph, x, y, words, colour or "#ffe6b8")
end

function stage.arrow(graph, x1, y1, x2, y2, colour)
    line(art.file, graph, x1, y1, x2, y2, colour)
    local angle = math.atan(y2 - y1, x2 - x1)
    for _, turn in ipairs {2.6, -2.6} do
        line(art.file, graph, x2, y2, math.floor(x2 + 7 * math.cos(angle + turn) + 0.5), math.floor(y2 + 7 * math.sin(angle + turn) + 0.5), colour)
    end
end

-- A cross as a process of the screen, to be moved by whoever asks for it.
function stage.cross(colour)
    local graph = MARKS - 1
    new_map(art.file, graph, 17, 17)
    for _, part in ipairs {{0, 7, 17, 3, "#181028"}, {7, 0, 3, 17, "#181028"}, {1, 8, 15, 1, colour}, {8, 1, 1, 15, colour}} do
        box(art.file, graph, table.unpack(part))
    end
    return process {file = art.file, graph = graph, z = -190}
end

-- A caption in the bottom left corner.
function stage.caption(words, colour)
    local _, height = screen_size()
    stage.label(stage.overlay(), 7, height - 15, words, colour)
end

return stage
