-- Graph tables: around each point, arrows that all have the same table and differ in their angle alone, 10 degrees from one
-- to the next. Each shows the entry that its angle picks; the colour tells which picture that is. The numbers are those of the entries.
-- picture: picked, frame 60
local stage = require "lib.stage"
local art = require "lib.art"

art.screen(480, 270)
new_map(1, 10, 480, 270, "#2a1c30")

-- An arrow of 15 x 15 pixels that points to (dx, dy), each of them -1, 0 or 1.
local function arrow(graph, dx, dy, colour)
    new_map(1, graph, 15, 15)
    stage.arrow(graph, 7 - 6 * dx, 7 - 6 * dy, 7 + 6 * dx, 7 + 6 * dy, colour)
end
arrow(20, 1, 0, "#ffd678")
arrow(21, 1, -1, "#a8e4ff")
arrow(22, 0, -1, "#b8e986")
arrow(23, 1, 1, "#d9a8ff")
arrow(24, 0, 1, "#ff9a8a")

local function on_circle(x, y, radius, degrees)
    local angle = math.rad(degrees)
    return math.floor(x + radius * math.cos(angle) + 0.5), math.floor(y - radius * math.sin(angle) + 0.5)
end

local function rose(marks, x, y, entries)
    for degrees = 0, 350, 10 do
        local at_x, at_y = on_circle(x, y, 100, degrees)
        process {ctype = c_scroll, file = 1, x = at_x, y = at_y, angle = 1000 * degrees, graph_table = entries}
    end
    for i, code in ipairs(entries) do
        local at_x, at_y = on_circle(x, y, 64, 360 * (i - 1) / #entries)
        local words = ("%d: %d"):format(i, code)
        stage.label(marks, at_x - text_size(words) // 2, at_y - 4, words)
    end
    local words = ("%d entries"):format(#entries)
    stage.label(marks, x - text_size(words) // 2, y - 4, words, "#a8e4ff")
end

stage.play {function()
    scroll_start(0, 1, 10, 0, -1, 0)
    local marks = stage.overlay()
    rose(marks, 120, 124, {20, 22, -20, 24})
    rose(marks, 360, 124, {20, 21, 22, -21, -20, -23, 24, 23})
    stage.caption "entry 1 is for angle 0, the rest follow counter-clockwise; negative: mirrored"
end}
