-- The wanderer: walks with left and right, jumps with space, stands on the ground and on ledges.
local art = require "lib.art"

local SPEED, JUMP, GRAVITY, FASTEST_FALL = 3, 8.4, 0.5, 9
local FRAMES = {walk = 0, walk_count = 8, jump = 8, fall = 9, stand = 10, blink = 11, count = 12}

local Land = {}
Land.__index = Land

-- Height of the ground at x.
function Land:ground_at(x)
    local place = (x + self.left) / self.step
    local i = math.max(0, math.min(#self.ground - 2, math.floor(place)))
    local low, high = self.ground[i + 1], self.ground[i + 2]
    return low + (high - low) * math.max(0, math.min(1, place - i)) - self.top
end

-- The highest floor that feet falling from y1 to y2 at x meet, or nil.
function Land:floor_between(x, y1, y2)
    local floor = self:ground_at(x)
    if floor > y2 then floor = nil end
    for _, ledge in ipairs(self.ledges) do
        local top = ledge.top - self.top
        if x + self.left >= ledge.left and x + self.left <= ledge.right and y1 <= top and y2 >= top then
            floor = math.min(floor or top, top)
        end
    end
    return floor
end

local wanderer = {}

-- The ground of the dusk world, for a map whose top left corner lies at (left, top) of it.
function wanderer.land(left, top)
    local land = setmetatable({left = left or 0, top = top or 0}, Land)
    for name, value in pairs(require "art.dusk_ground") do land[name] = value end
    return land
end

local function picture(tick, moving, standing, fall)
    if not standing then return fall < 0 and FRAMES.jump or FRAMES.fall end
    if moving then return FRAMES.walk + tick // 4 % FRAMES.walk_count end
    return tick % 150 < 6 and FRAMES.blink or FRAMES.stand
end

-- Makes the wanderer at x. keys: {left =, right =, jump =}; fields: of the process.
function wanderer.new(first_graph, land, x, keys, fields)
    if not map_size(art.file, first_graph) then art.load_frames(first_graph, "hero", FRAMES.count, 20, 46) end
    keys = keys or {left = "left", right = "right", jump = "space"}
    local at = {ctype = c_scroll, file = art.file, graph = first_graph, x = x, y = land:ground_at(x), z = 100}
    for name, value in pairs(fields or {}) do at[name] = value end
    return process(function(self)
        local y, fall, standing, tick = land:ground_at(x), 0, true, 0
        while true do
            local way = (key(keys.right) and 1 or 0) - (key(keys.left) and 1 or 0)
            self.x = math.max(8, math.min(land.width - land.left - 8, self.x + way * SPEED))
            if way ~= 0 then self.flags = way < 0 and 1 or 0 end
            if standing and key(keys.jump) then fall, standing = -JUMP, false end
            if standing and fall >= 0 then fall = SPEED + 1 end
            local floor = fall >= 0 and land:floor_between(self.x, y - SPEED, y + fall)
            if floor then
                y, fall, standing = floor, 0, true
            else
                if standing then fall, standing = 0, false end
                y, fall = y + fall, math.min(fall + GRAVITY, FASTEST_FALL)
            end
            self.y = math.floor(y + 0.5)
            tick = tick + 1
            self.graph = first_graph + picture(tick, way ~= 0, standing, fall)
            frame()
        end
    end, at)
end

return wanderer
