-- Pictures of the demos: each comes in true colour (NAME.png) and in the common palette (NAME.8.png).
-- All of them go into file 1.
local art = {file = 1, folder = "art/"}

-- Sets the video mode, keeping the colour depth that the player was started with.
function art.screen(width, height)
    local _, _, depth = screen_size()
    set_mode(width, height, depth)
    art.depth = depth
    if depth == 8 then set_palette(art.folder .. "hero.8.png") end    -- any of them: the palette is common
    return width, height
end

local function path(name, indexed)
    return art.folder .. name .. (indexed and ".8" or "") .. ".png"
end

function art.path(name)
    return path(name, art.depth == 8)
end

-- Loads a picture as a map; returns its width and height.
function art.load(graph, name)
    return load_map(art.file, graph, art.path(name))
end

-- A picture of soft alpha. Below 32 bits its dithered version looks better than one cut off at half opacity.
function art.load_soft(graph, name)
    return load_map(art.file, graph, path(name, art.depth < 32))
end

-- Loads a strip of frames of equal width as maps first, first + 1, ...; every frame is held at its point (px, py).
function art.load_frames(first, name, count, px, py)
    local width, height = art.load(first, name)
    local w = width // count
    for i = 0, count - 1 do
        load_map(art.file, first + i, art.path(name), i * w, 0, w, height)
        set_point(art.file, first + i, 0, px or w // 2, py or height // 2)
    end
    return count
end

-- Keeps a line of text on the screen; `say` is the text or a function that gives it anew each frame, nil for none.
function art.caption(x, y, say, colour)
    local function outlined(words)
        for dx = -1, 1 do for dy = -1, 1 do text(x + dx, y + dy, words, "#181028") end end
        text(x, y, words, colour or "#ffe6b8")
    end
    return process(function()
        while true do
            local words = say
            if type(say) == "function" then words = say() end
            if words then outlined(words) end
            frame()
        end
    end)
end

-- Says how to play for as long as the scripted hand does it alone: at the bottom on the right, or at (x, y).
function art.hint(hand, words, x, y)
    words = words or "arrows walk, space jumps"
    local width, height = screen_size()
    x, y = x or width - 8 - text_size(words), y or height - 20
    return art.caption(x, y, function() return exists(hand) and words or nil end, "#a8e4ff")
end

return art
