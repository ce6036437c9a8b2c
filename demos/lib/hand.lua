-- A scripted hand on the keyboard. Each entry is {frame, key, how long it is held}. After the last one it does the same with
-- left and right exchanged, and so to and fro, until somebody presses one of its keys: then it lets go and ends.
--     hand {{20, "right", 200}, {85, "space", 4}}
local OTHER_WAY = {left = "right", right = "left", a = "d", d = "a"}
local REST = 60                                      -- frames between two rounds

return function(presses)
    local held, length = {}, 0                       -- key: whether the hand holds it
    for _, entry in ipairs(presses) do
        length = math.max(length, entry[1] + entry[3] + REST)
        held[entry[2]], held[OTHER_WAY[entry[2]] or entry[2]] = false, false
    end

    local function somebody_plays()
        for name, by_hand in pairs(held) do
            if key(name) and not by_hand then return true end
        end
    end

    local function hold(name, down)
        held[name] = down
        if down then press(name) else release(name) end
    end

    return process(function()
        for now = 0, math.maxinteger do
            local back = now // length % 2 == 1
            for _, entry in ipairs(presses) do
                local start, name = entry[1], back and OTHER_WAY[entry[2]] or entry[2]
                if now % length == start then hold(name, true) end
                if now % length == start + entry[3] then hold(name, false) end
            end
            frame()
            if somebody_plays() then break end
        end
        for name in pairs(held) do release(name) end
    end)
end
