-- status: 1
-- stderr: missing_picture\.lua:3: load_map: .*/tests/player/nowhere\.png: No such file
load_map(1, 10, "nowhere.png")
