-- Small life: birds, owls, butterflies, fireflies, and plants close to the viewer. Each is a process of the scroll's world.
local art = require "lib.art"

local creatures = {}
local SHEETS = {bird = {graph = 400, count = 6}, owl = {graph = 410, count = 6}, butterfly = {graph = 420, count = 4}}
local PICTURES = {firefly = 430, spark = 431, fern = 432, reeds = 433, lantern = 434}

-- Graph of the first frame of a sheet, and how many follow one another.
function creatures.frames(name)
    local sheet = SHEETS[name]
    if not map_size(art.file, sheet.graph) then art.load_frames(sheet.graph, name, sheet.count) end
    return sheet.graph, sheet.count
end

local function picture(name)
    local graph = PICTURES[name]
    if not map_size(art.file, graph) then art.load(graph, name) end
    return graph
end

local function made(fn, fields, more)
    fields.ctype, fields.file = c_scroll, art.file
    for name, value in pairs(more or {}) do
        if name ~= "met_by" then fields[name] = value end
    end
    if not fn then return process(fields) end
    return process(fn, fields)
end

-- Where scroll n, whose world goes on for ever, meets what stands at x: whole spans further, around its view. A span is
-- wider than the view, so nobody sees the leap.
local function met(n, x)
    local left, span = scroll[n].x0 - 100, 680
    return left + (x - left) % span
end

-- A bird or an owl that crosses from x to x2 and begins again; it rises and sinks a little. With math.huge for x2 it flies for
-- ever, and `more.met_by` is the scroll that always meets it.
function creatures.flier(name, x, x2, y, speed, more)
    local first, count = creatures.frames(name)
    local met_by = more and more.met_by
    return made(function(self)
        local beat = math.random(0, 30)
        local way = x2 > x and speed or -speed
        if way < 0 and name == "bird" then self.flags = 1 end
        while true do
            for place = x, x2, way do
                beat = beat + 1
                self.x, self.y = met_by and met(met_by, place) or place, y + 7 * math.sin(beat * 0.05)
                self.graph = first + beat // 4 % count
                frame()
            end
        end
    end, {graph = first, x = x, y = y, z = 600}, more)
end

-- A butterfly that dances around (x, y).
function creatures.butterfly(x, y, more)
    local first, count = creatures.frames("butterfly")
    return made(function(self)
        local t = math.random() * 6
        while true do
            t = t + 0.03
            self.x, self.y = x + 34 * math.sin(t) + 9 * math.sin(3.1 * t), y + 14 * math.sin(1.7 * t) - 6 * math.abs(math.sin(5 * t))
            self.graph = first + math.floor(t * 8) % count
            frame()
        end
    end, {graph = first, x = x, y = y, z = 90}, more)
end

-- A firefly that drifts around (x, y) and glows on and off. `more.met_by` as for fliers.
function creatures.firefly(x, y, more)
    local graph, met_by = picture("firefly"), more and more.met_by
    return made(function(self)
        local t, pace = math.random() * 40, 0.01 + math.random() * 0.015
        while true do
            t = t + pace
            local place = x + 26 * math.sin(t) + 8 * math.sin(2.7 * t)
            self.x, self.y = met_by and met(met_by, place) or place, y + 15 * math.sin(1.3 * t + 1)
            self.graph = math.sin(3 * t) > -0.55 and graph or 0
            frame()
        end
    end, {graph = graph, x = x, y = y, z = 60}, more)
end

-- A warm light that hovers.
function creatures.spark(x, y, more)
    return made(function(self)
        local t = math.random() * 6
        while true do
            t = t + 0.07
            self.y = y + 3 * math.sin(t)
            self.size = 100 + 14 * math.sin(2.3 * t)
            frame()
        end
    end, {graph = picture("spark"), x = x, y = y, z = 80}, more)
end

-- A fern or reeds: a picture without a script, its foot at (x, y), in front of nearly everything.
function creatures.plant(name, x, y, more)
    local graph = picture(name)
    local width, height = map_size(art.file, graph)
    set_point(art.file, graph, 0, width // 2, height - 1)
    return made(nil, {graph = graph, x = x, y = y, z = -50}, more)
end

creatures.picture = picture
return creatures
