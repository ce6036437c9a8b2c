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
background("#14a05a")
while true do
    process{file = 1, graph = 20, x = math.random(9, 62), y = math.random(9, 44)}
    if frame_number() == 20 then set_mode(40, 90, 32) end
    frame()
end
LUA
fail() { echo "FAILED: $*"; exit 1; }
# A file larger than `limit` KB cannot be written, just as on a full disk.
record() (
    trap '' XFSZ
    ulimit -f "${limit:-unlimited}"
    PATH=${player_path:-$PATH} exec "$player" --size 63x45 --frames "${frames:-30}" --record "$scratch/$1" "${@:2}" "$scratch/game.lua"
)

twice() {
    [[ $(record "a.$1") == "film: $scratch/a.$1 (30 frames)" ]] || fail "what is told of $1"
    # A film is not mixed up with what is printed where nobody listens.
    record "b.$1" <&- >&- 2>&- && cmp "$scratch/a.$1" "$scratch/b.$1" || fail "two runs differ: $1"
    record "c.$1" --seed 2
    if cmp -s "$scratch/a.$1" "$scratch/c.$1"; then fail "the film does not show the game: $1"; fi
}
# refused FILE REGEX: no film, a message, and what had the name before is still there
refused() {
    cp "$scratch/$1" "$scratch/before" 2> /dev/null || rm -f "$scratch/before"
    if record "$1" 2> "$scratch/err"; then fail "$1 was recorded"; fi
    grep -Eq "$2" "$scratch/err" || fail "message for $1: $(cat "$scratch/err")"
    if [[ -e $scratch/before ]]; then cmp "$scratch/$1" "$scratch/before"; else [[ ! -e $scratch/$1 ]]; fi || fail "$1 was begun"
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

# probed FILE ENTRY...: what ffprobe says of a film's pictures
probed() { ffprobe -v error -count_frames -show_entries "stream=$2" -of csv=p=0 "$scratch/$1"; }
# The colour of the first picture's first pixel, as the film's own description of its colours has it shown.
like_the_game() {
    read -r r g b < <(ffmpeg -v error -i "$scratch/$1" -frames:v 1 -f rawvideo -pix_fmt rgb24 - | od -An -tu1 -N3)
    (((r - 20) ** 2 + (g - 160) ** 2 + (b - 90) ** 2 < 30)) || fail "$1 shows $r, $g, $b instead of 20, 160, 90"
}

if (($#)); then
    for format; do
        twice "$format"
        stopped "$format"
        [[ $format == gif ]] && every=2 || every=1
        [[ $(probed "a.$format" nb_read_frames) == $((30 / every)) ]] || fail "number of pictures: $format"
        ((taken / every - $(probed "long.$format" nb_read_frames) <= 1)) || fail "the stopped film is cut short: $format"
        like_the_game "a.$format"
        described=$(probed "a.$format" color_range,color_space,color_transfer,color_primaries,r_frame_rate)
        [[ $format == gif || $described == tv,bt709,bt709,bt709,60/1 ]] || fail "$format is described as $described"
        limit=1 refused "a.$format" "a.$format: ffmpeg could not make the film"
    done
    exit
fi
twice png
[[ $(od -An -j41 -N4 -tu1 "$scratch/a.png" | xargs) == "0 0 0 30" ]] || fail "number of pictures"
record d.png --scale 2 && ! cmp -s "$scratch/a.png" "$scratch/d.png" || fail "enlarged film"
# With the inspector: the same bytes as well, another picture.
record f.png --inspect --scale 2 && record g.png --inspect --scale 2 && cmp "$scratch/f.png" "$scratch/g.png" \
    || fail "two inspected runs differ"
if cmp -s "$scratch/d.png" "$scratch/f.png"; then fail "the inspector does not show"; fi
refused film.avi 'film.avi: films end with .mp4, .webm, .gif or .png \(animated\)'
record new/folder/film.png || fail "a folder that is missing is not made"
refused game.lua/film.png 'game.lua: Not a directory'
player_path=$scratch refused film.mp4 'made by ffmpeg, which is not installed: apt-get install ffmpeg, or record to a .png'
# One that begins a film and gives up, and one that has enough of it early.
for ending in 'exit 1' 'exit 0'; do
    printf '#!/bin/sh\nfor word; do :; done\n: > "${word#file:}"\n%s\n' "$ending" > "$scratch/ffmpeg"
    chmod +x "$scratch/ffmpeg"
    frames=3000 player_path=$scratch refused film.mp4 'film.mp4: ffmpeg (could not make|ended before) the film'
done
limit=1 refused a.png 'a.png: File too large'
stopped png
[[ $(tail -c 8 "$scratch/long.png" | head -c 4) == IEND ]] || fail "the film that was stopped has no end"
# An error in the script ends the film; it does not spoil it.
echo 'for i = 1, 5 do frame() end broken()' > "$scratch/game.lua"
record e.png 2> /dev/null && fail "the script is broken"
[[ $(tail -c 8 "$scratch/e.png" | head -c 4) == IEND ]] || fail "the film of a script that fails has no end"
! compgen -G "$scratch/*.part*" || fail "something was left beside"
