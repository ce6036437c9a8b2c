-- Every mistake is told with the place in the script, what is wrong, and what was expected.
new_map(1, 10, 8, 8)
local here = debug.getinfo(1, "S").short_src

local ended = process{}
kill(ended)

local mistakes = {
    {"scroll_start takes 6 or 7 arguments, got 2", function() scroll_start(1, 2) end},
    {"scroll_move takes 1 argument, got 0", function() scroll_move() end},
    {"scroll number out of range %(error 107, argument 1, value 12%)", function() scroll_start(12, 1, 10, 0, -1, 0) end},
    {"argument 2: a number was expected, got string", function() scroll_start(0, "one", 10, 0, -1, 0) end},
    {"argument 1: 4294967296 does not fit 32 bits", function() scroll_move(1 << 32) end},
    {'scroll%[3%] has no field "sped" %(did you mean "speed"%?%)', function() scroll[3].sped = 4 end},
    {'scroll%[3%] has no field "colour" %(there are: camera, ratio', function() return scroll[3].colour end},
    {"scroll%[10%] does not exist: its elements are 0 to 9", function() return scroll[10].x0 end},
    {"an element of scroll cannot be replaced", function() scroll[0] = 1 end},
    {'a process has no field "grpah" %(did you mean "graph"%?%)', function() process{grpah = 1} end},
    {"this process has ended", function() ended.x = 1 end},
    {"x: a number was expected, got table", function() process{x = {}} end},
    {"graph_table: 1 to 256 graph codes were expected, got 0", function() process{graph_table = {}} end},
    {"nowhere.png: No such file", function() load_map(1, 11, "nowhere.png") end},
    {"messages.lua: [Nn]ot a PNG", function() load_map(1, 11, "messages.lua") end},
    {"box takes 7 arguments, got 3", function() box(1, 10, 0) end},
    {"file 1 has no graph 11 %(there are: 10%)", function() set_point(1, 11, 0, 0, 0) end},
    {"there is no file 100: files are numbered 0 to 99", function() set_point(100, 10, 0, 0, 0) end},
    {"control points are numbered 0 to 999, not 1000", function() set_point(1, 10, 1000, 0, 0) end},
    {'"#12345" is not a colour', function() new_map(1, 12, 4, 4, "#12345") end},
    {'there is no key "lefft" %(did you mean "left"%?%)', function() key("lefft") end},
    {"bits per pixel are 8, 16 or 32, not 24", function() set_mode(320, 200, 24) end},
    {"argument 1: 100 is not in 1 to 99", function() define_region(100, 0, 0, 1, 1) end},
    {"own function, not in another coroutine", function() coroutine.wrap(frame)() end},
}
for _, mistake in ipairs(mistakes) do
    local expected, run = mistake[1], mistake[2]
    local line = debug.getinfo(run, "S").linedefined
    local ok, message = pcall(run)
    assert(not ok, "was accepted: " .. expected)
    assert(message:find(expected), ("expected %q, got %q"):format(expected, message))
    -- A coroutine's first function has no line of the script.
    assert(message:find(("%s:%d: "):format(here, line), 1, true) or expected:find("coroutine"), "no place in: " .. message)
end
-- A process whose fields were refused must not stay behind.
assert(#processes() == 1, #processes())
quit()
