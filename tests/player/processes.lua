-- options: --frames 1000 --size 64x48
-- The life of processes: order of turns, waiting, the ways to end, fields.
local function log_of(run)
    local log = {}
    run(function(entry) log[#log + 1] = entry end)
    return table.concat(log, " ")
end
local function equal(got, expected)
    assert(got == expected and math.type(got) == math.type(expected), ("expected %s, got %s"):format(expected, got))
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
local turns = 0
local p = process(function() while true do turns = turns + 1 frame() end end)
for _, case in ipairs{{4, 0}, {3, 0}, {2, 1}} do
    p.status = case[1]
    local before = turns
    frame()
    equal(turns - before, case[2])
end
kill(p)

-- What is written is read again: fractions of measures, whole numbers elsewhere, until the engine says otherwise.
local q = process{}
p = process{data = {name = "p"}, ctype = c_scroll}
equal(#processes(c_scroll), 1)
for _, field in ipairs{"x", "y", "z", "angle", "size", "size_x", "size_y", "alpha"} do
    p[field] = 100
    for i = 1, 3 do p[field] = p[field] + 0.5 end
    equal(p[field], 101.5)
    p[field] = p[field] - 1.5
    equal(p[field], 100)
end
p.graph = -2.1 equal(p.graph, -3)
p.x = true equal(p.x, 1)
p.x = q equal(p.x, q.id)
p.alpha = 999.5 equal(p.alpha, 255)
p.graph_table = {10, -11, 12}
equal(p.graph_table[2], -11)
p.graph_table = nil
equal(p.graph_table, nil)
kill(p) kill(q)
equal(p.data.name, "p")

-- Many short lives, with garbage collected in between, against a count kept by hand.
local alive = 0
math.randomseed(5)
for i = 1, 300 do
    for _ = 1, math.random(0, 4) do
        alive = alive + 1
        process(function(self) frame(math.random(1, 9)) alive = alive - 1 end)
    end
    for _, each in ipairs(processes()) do
        if tostring(each) ~= "process 1" and math.random() < 0.05 then kill(each) alive = alive - 1 end
    end
    if i % 50 == 0 then collectgarbage() end
    frame()
    equal(#processes() - 1, alive)
end
quit()
