#!/usr/bin/env bash
# Shots, their sheet, scaling, where pictures go and what they leave alone, and that two runs are alike to the last bit.
# usage: shots.sh PLAYER
set -euo pipefail
player=$(realpath "$1")
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
cd "$scratch"
cat > game.lua <<'LUA'
new_map(1, 20, 4, 4, "#ffffff")
while true do
    process{file = 1, graph = 20, x = math.random(0, 99), y = math.random(0, 49)}
    frame()
end
LUA
fail() { echo "FAILED: $*"; exit 1; }
run() { "$player" --size 100x50 --frames 10 --every 4 --shots "$1" --sheet "$1.png" "${@:2}" game.lua; }
# Width and height of a PNG, from its header.
size_of() { od -An -j16 -N8 -tu1 "$1" | awk '{ print $3 * 256 + $4 "x" $7 * 256 + $8 }'; }

run a
run b
[[ $(ls a) == $'frame_00004.png\nframe_00008.png\nframe_00010.png' ]] || fail "shots: $(ls a)"
diff -r a b && cmp a.png b.png || fail "two runs differ"
[[ $(size_of a/frame_00004.png) == 100x50 ]] || fail "size of a shot"
cmp -s a/frame_00004.png a/frame_00008.png && fail "nothing moved"
run c --seed 2
cmp -s a.png c.png && fail "the seed has no effect"
run d --scale 3
[[ $(size_of d/frame_00010.png) == 300x150 ]] || fail "size of an enlarged shot"
cat > compare.lua <<'LUA'
load_map(1, 1, "a/frame_00010.png")
load_map(1, 2, "d/frame_00010.png")
for y = 0, 149 do for x = 0, 299 do assert(pixel(1, 2, x, y) == pixel(1, 1, x // 3, y // 3)) end end
set_mode(100, 50, 8)
set_palette{"#ff00ff"}
new_map(1, 3, 2, 2)
save_map(1, 3, "indexed.png")
quit()
LUA
"$player" compare.lua || fail "an enlarged shot shows something else"
LC_ALL=C grep -aPq 'tRNS\x00' indexed.png || fail "index 0 of a saved map is opaque"

# refused STATUS MESSAGE COMMAND...: its status, and the first line that it prints as an error
refused() {
    local status=0
    "${@:3}" 2> err || status=$?
    ((status == $1)) || fail "exit status $status for: ${*:3}"
    [[ $(head -1 err) == "$2" ]] || fail "message: $(cat err)"
}
out() { "$player" --frames 1 --out . "$@"; }
misused() { refused 2 "$1" "$player" "${@:2}"; }

# Of what stands where the pictures go, only what an earlier run wrote is replaced.
mkdir game theirs
touch game/frame_{left,123,00007}.png theirs/frame_00001.png
ln -s ../game.lua game/frame_00008.png
out game.lua
[[ $(ls game) == $'frame_00001.png\nframe_00008.png\nframe_123.png\nframe_left.png' ]] || fail "left: $(ls game)"
out game.lua || fail "a second run"
echo mine > game.png
refused 1 "./game.png: this is no contact sheet of an earlier run, so it stays; name another place with --sheet or --out" out game.lua
[[ $(cat game.png) == mine ]] || fail "a picture of somebody else is gone"
ln -s theirs linked
cp game.lua linked.lua
refused 1 "./linked: this is a link, which is not followed; name another place with --shots or --out" out linked.lua
cp game.lua ...lua
refused 1 '...lua: no folder of pictures can be called ".."; name places with --shots and --sheet' out ...lua
ln -s game.png link.png
mkfifo pipe.png
refused 1 "link.png: this is a link, and only regular files are replaced" "$player" --sheet link.png game.lua
refused 1 "pipe.png: this is a special file, and only regular files are replaced" timeout 20 "$player" --sheet pipe.png game.lua
[[ -L link.png && -p pipe.png && $(cat game.png) == mine && $(ls theirs) == frame_00001.png ]] || fail "something was replaced"
# A full disk, or as good as one.
full() (trap '' XFSZ; ulimit -f 1; run "$@")
refused 1 "sub/frame_00004.png: File too large" full sub --size 640x480
refused 1 "a.png: File too large" full a --shots sub
cmp a.png b.png && ! compgen -G '*.part*' || fail "a sheet that could not be written replaces the old one"
unheard() { "$@" > /dev/full; }
refused 1 "standard output cannot be written" unheard "$player" --version

misused '--size: "100by50" is not of the form 640x480' --size 100by50 game.lua
misused '--size: "20000x50" is too large: no side has more than 16384 pixels' --size 20000x50 game.lua
misused "--sheet: game.lua: the name of a sheet ends with .png" --sheet game.lua
misused "there is no option --frame; did you mean --frames?" --frame 5 --every 3 game.lua
misused "there is no option --fps" --bpp 8 --fps=3 --scale 2 game.lua
misused "no such script: gane.lua; did you mean game.lua?" gane.lua
[[ $("$player" --version) =~ ^RVK_mod_scroll2D\ [0-9]+\.[0-9]+\.[0-9]+$ ]] || fail "version"
"$player" --scale 2 --scale 1 --frames 1 game.lua || fail "the last of two equal options does not count"
"$player" --module game.lua game.lua 2> err && fail "a script is no module"
[[ -s err ]] || fail "no message for a wrong module"
exit 0
