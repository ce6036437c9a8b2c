-- Animation: the frames of a sheet become maps that follow one another, and a process shows one after the other.
-- picture: flock, frame 76
set_mode(480, 270, 32)
load_map(1, 10, "../art/meadow_dusk.png")                -- 760 x 300
for i = 0, 5 do                                          -- a sheet of 192 x 24: six frames of 32 x 24, side by side
    load_map(1, 100 + i, "../art/bird.png", 32 * i, 0, 32, 24)
end
scroll_start(0, 1, 10, 0, -1, 0)

local function bird(self, step, beat)
    for tick = beat, math.maxinteger do
        self.graph = 100 + tick // 4 % 6                 -- each of the six for four frames, then from the first again
        if self.x > 700 then step = -3 end
        if self.x < 60 then step = 3 end
        self.flags = step < 0 and 1 or 0                 -- the sheet looks right; 1 mirrors it
        self.x = self.x + step
        frame()
    end
end
for i = 0, 4 do
    local last = process(bird, {ctype = c_scroll, file = 1, x = 460 - 44 * i, y = 30 + 22 * (i % 3), size = 150}, 3, 9 * i)
    if i == 2 then scroll[0].camera = last end
end
