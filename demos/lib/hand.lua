-- A scripted hand on the keyboard. Each entry is {frame, key, how long it is held}.
--     hand {{20, "right", 200}, {85, "space", 4}}
return function(presses)
    return process(function()
        for now = 0, math.maxinteger do
            for _, entry in ipairs(presses) do
                local start, name, length = entry[1], entry[2], entry[3]
                if now == start then press(name) end
                if now == start + length then release(name) end
            end
            frame()
        end
    end)
end
