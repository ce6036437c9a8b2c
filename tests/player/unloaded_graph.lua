-- A process whose picture is not loaded is told of once for each picture, with its line where that is known.
-- lines: 3
-- stderr: ^warning: .*unloaded_graph.lua:12: file 1 has no graph 13 \(there are: 10 to 12, 20\); a process that
-- stderr: ^warning: .*unloaded_graph.lua:13: there is no file 100: files are numbered 0 to 99; a process that
-- stderr: ^warning: file 1 has no graph 20 \(there are: 10 to 12\); a process that shows it is not drawn$
for _, graph in ipairs {10, 11, 12, 20} do new_map(1, graph, 4, 4) end
process {file = 1, graph = 20}
process {file = 1, graph = 14, visible = 0}
local late = process {file = 1, graph = 15}
late.graph = 0
for i = 1, 3 do
    process {file = 1, graph = 13}
    process {ctype = c_scroll, file = 100, graph = 1}
    frame()
end
unload_map(1, 20)
frame(2)
quit()
