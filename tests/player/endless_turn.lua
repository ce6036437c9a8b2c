-- status: 1
-- stderr: endless_turn\.lua:3: .*is a frame\(\) missing in a loop
while true do end
