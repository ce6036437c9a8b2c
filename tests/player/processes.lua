-- options: --frames 1000 --size 64x48
-- The life of processes: order of turns, waiting, the ways to end, fields.
local function log_of(run)
    local log = {}
    run(function(entry) log[#log + 1] = entry end)
    return table.concat(log, " ")
end
local function equal(got, expected)
    assert(got == expected, ("expected %s, got %s"):format(expected, got))
end

-- A process that another makes has its first turn in the same frame; turns go by age; frame(n) skips.
equal(log_of(function(log)
    process(function(self, name)
        log(name .. 1)
        process(function() log("b1") frame() log("b2") end)
        frame()
        log(name .. 2)
        frame(2)
        log(name .. 4)
    end, nil, "a")
    for i = 1, 4 do log("|") frame() end
end), "| a1 b1 | a2 b2 | | a4")

-- Each way to end: return, kill by another, kill of oneself, by the module. What is to be closed is closed.
equal(log_of(function(log)
    local function life(how)
        return process(function(self)
            local guard <close> = setmetatable({}, {__close = function() log("closed-" .. how) end})
            if how == "return" then return end
            if how == "self" then pcall(kill, self) log("never") end
            if how == "module" then scroll_stop(all_scroll) log("never") end
            frame(100)
            log("never")
        end, {ctype = how == "module" and c_scroll or c_screen})
    end
    new_map(1, 10, 8, 8)
    scroll_start(4, 1, 10, 0, -1, 0)
    local all = {}
    for _, how in ipairs{"return", "self", "module", "other"} do all[#all + 1] = life(how) end
    frame()
    for i = 1, 3 do assert(not exists(all[i]), i) end
    assert(exists(all[4]) and exists(all[4].id))
    kill(all[4])
    kill(all[4])
    assert(not exists(all[4]))
    frame()
end), "closed-return closed-self closed-module closed-other")

-- Status 2 alone gets turns.
do
    local turns = 0
    local p = process(function() while true do turns = turns + 1 frame() end end)
    for _, case in ipairs{{4, 0}, {3, 0}, {2, 1}} do
        p.status = case[1]
        local before = turns
        frame()
        equal(turns - before, case[2])
    end
    kill(p)
end

-- Fields keep what they are given, as 32-bit integers.
do
    local q = process{}
    local fields = {x = -5, y = 7, z = 9, file = 1, graph = 2, region = 3, resolution = 10, angle = 90000, size = 50,
                    size_x = 60, size_y = 70, flags = 1, status = 4, scroll_mask = 6, scroll_mark = 0, alpha = 100,
                    ctype = c_scroll, visible = 1, silhouette = 3}
    local p = process(fields)
    for name, value in pairs(fields) do assert(p[name] == value, name) end
    equal(#processes(c_scroll), 1)
    p.graph = 2.9 equal(p.graph, 2)
    p.graph = -2.1 equal(p.graph, -3)
    p.x = true equal(p.x, 1)
    p.x = q equal(p.x, q.id)
    p.alpha = 999 equal(p.alpha, 255)
    p.graph_table = {10, -11, 12}
    equal(p.graph_table[2], -11)
    p.graph_table = nil
    equal(p.graph_table, nil)
    p.data = {name = "p"}
    equal(p.data.name, "p")
    kill(p)
    kill(q)
    p.data.name = "still here"
    equal(p.data.name, "still here")
end

-- Many short lives, with garbage collected in between, against a count kept by hand.
local alive = 0
math.randomseed(5)
for i = 1, 300 do
    for _ = 1, math.random(0, 4) do
        alive = alive + 1
        process(function(self) frame(math.random(1, 9)) alive = alive - 1 end)
    end
    for _, p in ipairs(processes()) do
        if tostring(p) ~= "process 1" and math.random() < 0.05 then kill(p) alive = alive - 1 end
    end
    if i % 50 == 0 then collectgarbage() end
    frame()
    equal(#processes() - 1, alive)
end
quit()
