#!/usr/bin/env bash
# Shots, their sheet, scaling, and that two runs are alike to the last bit.
# usage: shots.sh PLAYER
set -euo pipefail
player=$1
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
cat > "$scratch/game.lua" <<'LUA'
new_map(1, 20, 4, 4, "#ffffff")
while true do
    process{file = 1, graph = 20, x = math.random(0, 99), y = math.random(0, 49)}
    frame()
end
LUA
fail() { echo "FAILED: $*"; exit 1; }
run() { "$player" --size 100x50 --frames 10 --every 4 --shots "$scratch/$1" --sheet "$scratch/$1.png" "${@:2}" "$scratch/game.lua"; }
# Width and height of a PNG, from its header.
size_of() { od -An -j16 -N8 -tu1 "$1" | awk '{ print $3 * 256 + $4 "x" $7 * 256 + $8 }'; }

run a
run b
[[ $(ls "$scratch/a") == $'frame_00004.png\nframe_00008.png\nframe_00010.png' ]] || fail "shots: $(ls "$scratch/a")"
diff -r "$scratch/a" "$scratch/b" && cmp "$scratch/a.png" "$scratch/b.png" || fail "two runs differ"
[[ $(size_of "$scratch/a/frame_00004.png") == 100x50 ]] || fail "size of a shot"
cmp -s "$scratch/a/frame_00004.png" "$scratch/a/frame_00008.png" && fail "nothing moved"
run c --seed 2
cmp -s "$scratch/a.png" "$scratch/c.png" && fail "the seed has no effect"
run d --scale 3
[[ $(size_of "$scratch/d/frame_00010.png") == 300x150 ]] || fail "size of an enlarged shot"
cat > "$scratch/compare.lua" <<'LUA'
load_map(1, 1, "a/frame_00010.png")
load_map(1, 2, "d/frame_00010.png")
for y = 0, 149 do for x = 0, 299 do assert(pixel(1, 2, x, y) == pixel(1, 1, x // 3, y // 3)) end end
quit()
LUA
"$player" "$scratch/compare.lua" || fail "an enlarged shot shows something else"

# misused MESSAGE ARGUMENT...: what is said to a wrong command line, in its first line
misused() {
    local status=0
    "$player" "${@:2}" 2> "$scratch/err" || status=$?
    ((status == 2)) || fail "exit status $status for: ${*:2}"
    [[ $(head -1 "$scratch/err") == "$1" ]] || fail "message: $(cat "$scratch/err")"
}
misused '--size: "100by50" is not of the form 640x480' --size 100by50 "$scratch/game.lua"
misused "there is no option --frame; did you mean --frames?" --frame 5 --every 3 "$scratch/game.lua"
misused "there is no option --fps" --bpp 8 --fps=3 --scale 2 "$scratch/game.lua"
misused "no such script: $scratch/gane.lua; did you mean $scratch/game.lua?" "$scratch/gane.lua"
"$player" --scale 2 --scale 1 --frames 1 "$scratch/game.lua" || fail "the last of two equal options does not count"
"$player" --module "$scratch/game.lua" "$scratch/game.lua" 2> "$scratch/err" && fail "a script is no module"
[[ -s $scratch/err ]] || fail "no message for a wrong module"
exit 0
