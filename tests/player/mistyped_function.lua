-- status: 1
-- stderr: mistyped_function\.lua:5: .*nil value \(global 'scrol_start'\) \(did you mean "scroll_start"\?\)
-- stderr: in function <.*mistyped_function\.lua:4>
process(function()
    scrol_start(0, 1, 10, 0, -1, 0)
end)
