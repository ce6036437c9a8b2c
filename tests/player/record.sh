#!/usr/bin/env bash
# Films: that two runs give the same bytes, and what is said when a film cannot be made.
#
# usage: record.sh PLAYER [FORMAT...]     FORMATs are those of ffmpeg; 77, skipped, when that is not installed.
#                                         Without any: the animated PNG and the messages
set -euo pipefail
player=$1
shift
if (($#)) && ! command -v ffmpeg > /dev/null; then
    echo "ffmpeg is not installed: films of its formats are not tested"
    exit 77
fi
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
cat > "$scratch/game.lua" <<'LUA'
new_map(1, 20, 5, 5, "#ffcc33")
while true do
    process{file = 1, graph = 20, x = math.random(0, 62), y = math.random(0, 44)}
    if frame_number() == 20 then set_mode(40, 90, 32) end
    frame()
end
LUA
fail() { echo "FAILED: $*"; exit 1; }
record() { PATH=${player_path:-$PATH} "$player" --size 63x45 --frames "${frames:-30}" --record "$scratch/$1" "${@:2}" "$scratch/game.lua"; }

twice() {
    [[ $(record "a.$1") == "film: $scratch/a.$1 (30 frames)" ]] || fail "what is told of $1"
    record "b.$1" && cmp "$scratch/a.$1" "$scratch/b.$1" || fail "two runs differ: $1"
    record "c.$1" --seed 2
    if cmp -s "$scratch/a.$1" "$scratch/c.$1"; then fail "the film does not show the game: $1"; fi
}
refused() {
    if record "$1" 2> "$scratch/err"; then fail "$1 was recorded"; fi
    grep -Eq "$2" "$scratch/err" || fail "message for $1: $(cat "$scratch/err")"
    [[ ! -e $scratch/$1 ]] || fail "$1 was begun"
}

# Ctrl+C, which reaches every program of the terminal, in the middle of a long film.
stopped() {
    set -m
    frames=1000000 record "long.$1" > "$scratch/told" 2>&1 &
    set +m
    sleep 1
    kill -INT -- "-$!"
    wait $! && fail "a run that was stopped ended with 0"
    taken=$(sed -n 's/^film: .*long.* (\([0-9]*\) frames)$/\1/p' "$scratch/told")
    ((taken > 0)) && grep -q "^stopped at frame $taken$" "$scratch/told" || fail "told: $(cat "$scratch/told")"
}

pictures_in() {
    ffprobe -v error -show_entries stream=nb_read_frames -count_frames -of csv=p=0 "$scratch/$1"
}

if (($#)); then
    for format; do
        twice "$format"
        stopped "$format"
        [[ $format == gif ]] && every=2 || every=1
        [[ $(pictures_in "a.$format") == $((30 / every)) ]] || fail "number of pictures: $format"
        ((taken / every - $(pictures_in "long.$format") <= 1)) || fail "the stopped film is cut short: $format"
    done
    exit
fi
twice png
record d.png --scale 2 && ! cmp -s "$scratch/a.png" "$scratch/d.png" || fail "enlarged film"
# With the inspector: the same bytes as well, another picture.
record f.png --inspect --scale 2 && record g.png --inspect --scale 2 && cmp "$scratch/f.png" "$scratch/g.png" \
    || fail "two inspected runs differ"
if cmp -s "$scratch/d.png" "$scratch/f.png"; then fail "the inspector does not show"; fi
refused film.avi 'film.avi: films end with .mp4, .webm, .gif or .png \(animated\)'
refused film 'films end with'
record new/folder/film.png || fail "a folder that is missing is not made"
refused game.lua/film.png 'game.lua: Not a directory'
player_path=$scratch refused film.mp4 'made by ffmpeg, which is not installed: apt-get install ffmpeg, or record to a .png'
printf '#!/bin/sh\n: > "$SCRATCH/film.mp4"\nexit 1\n' > "$scratch/ffmpeg"
chmod +x "$scratch/ffmpeg"
SCRATCH=$scratch player_path=$scratch refused film.mp4 'ffmpeg could not make the film'
stopped png
[[ $(tail -c 8 "$scratch/long.png" | head -c 4) == IEND ]] || fail "the film that was stopped has no end"
# An error in the script ends the film; it does not spoil it.
echo 'for i = 1, 5 do frame() end broken()' > "$scratch/game.lua"
record e.png 2> /dev/null && fail "the script is broken"
[[ $(tail -c 8 "$scratch/e.png" | head -c 4) == IEND ]] || fail "the film of a script that fails has no end"
exit 0
