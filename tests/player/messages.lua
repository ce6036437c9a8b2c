-- Every mistake is told with the place in the script, the function, what is wrong, and what was expected.
local scratch = os.getenv("SCRATCH") .. "/"
new_map(1, 10, 8, 8)
local here = debug.getinfo(1, "S").short_src
local ended = process{}
kill(ended)
local victim = process{}
local killing = setmetatable({}, {__len = function() return 2 end, __index = function() kill(victim) return 3 end})
local function png(name, bytes)
    if not bytes then save_map(1, 10, scratch .. "whole.png") end
    io.open(scratch .. name, "w"):write((bytes or io.open(scratch .. "whole.png"):read("a"):sub(1, -30))):close()
    return scratch .. name
end

local mistakes = {
    {"scroll_start takes 6 or 7 arguments, got 2", function() scroll_start(1, 2) end},
    {"scroll number out of range %(error 107, argument 1, value 12%)", function() scroll_start(12, 1, 10, 0, -1, 0) end},
    {"scroll_start: argument 7: there is no mode 4: modes are 0 to 3", function() scroll_start(0, 1, 10, 0, -1, 0, 4) end},
    {"scroll_start: argument 2: a number was expected, got string", function() scroll_start(0, "one", 10, 0, -1, 0) end},
    {"scroll_move: argument 1: 4294967296 does not fit 32 bits", function() scroll_move(1 << 32) end},
    {'scroll%[3%] has no field "sped" %(did you mean "speed"%?%)', function() scroll[3].sped = 4 end},
    {"scroll%[10%] does not exist: its elements are 0 to 9", function() return scroll[10].x0 end},
    {"an element of scroll cannot be replaced", function() scroll[0] = 1 end},
    {"camera: a process or 0 was expected, got nil", function() scroll[0].camera = nil end},
    {'a process has no field "grpah" %(did you mean "graph"%?%)', function() process{grpah = 1} end},
    {"this process has ended", function() ended.x = 1 end},
    {"this process has ended", function() victim.graph_table = killing end},
    {"process: the function comes first", function() process({x = 1}, print) end},
    {"graph_table: 1 to 256 graph codes were expected, got 0", function() process{graph_table = {}} end},
    {"graph_table: a table of 1 to 256 graph codes, or nil, was expected, got string", function() process{graph_table = "1,2"} end},
    {"nowhere.png: No such file", function() load_map(1, 11, "nowhere.png") end},
    {"messages.lua: [Nn]ot a PNG", function() load_map(1, 11, "messages.lua") end},
    {"empty.png: the file is empty", function() load_map(1, 11, png("empty.png", "")) end},
    {"cut.png: the file is cut short", function() load_map(1, 11, png("cut.png")) end},
    {": it is a folder", function() load_map(1, 11, ".") end},
    {"box takes 7 arguments, got 3", function() box(1, 10, 0) end},
    {"file 1 has no graph 11 %(there are: 10%)", function() set_point(1, 11, 0, 0, 0) end},
    {"control points are numbered 0 to 999, not 1000", function() set_point(1, 10, 1000, 0, 0) end},
    {'"#12345" is not a colour', function() new_map(1, 12, 4, 4, "#12345") end},
    {"map_text: argument 5: the text is longer than 10000 characters", function() map_text(1, 10, 0, 0, ("x"):rep(1 << 26), 1) end},
    {'there is no key "lefft" %(did you mean "left"%?%)', function() key("lefft") end},
    {"bits per pixel are 8, 16 or 32, not 24", function() set_mode(320, 200, 24) end},
    {"define_region: argument 1: 100 is not in 1 to 99", function() define_region(100, 0, 0, 1, 1) end},
    {"frame: argument 1: a number was expected, got string", function() frame("x") end},
    {"quit: argument 1: a number was expected, got string", function() quit("bye") end},
    {"shot: there is no folder /nonexistent", function() shot("/nonexistent/x.png") end},
    {"own function, not in another coroutine", function() coroutine.wrap(frame)() end},
}
for _, mistake in ipairs(mistakes) do
    local expected, run = mistake[1], mistake[2]
    local place = ("%s:%d: "):format(here, debug.getinfo(run, "S").linedefined)
    local ok, message = pcall(run)
    assert(not ok and message:find(expected), ("expected %q, got %q"):format(expected, message))
    assert(message:find(place, 1, true) == 1 or expected:find("coroutine"), "no place in: " .. message)
end
-- A process whose fields were refused must not stay behind.
assert(#processes() == 1, #processes())
quit()
