#!/usr/bin/env bash
# How scripts end and what is told of them on standard error: errors, warnings, turns that do not end.
#
# usage: endings.sh PLAYER
set -uo pipefail
player=$(realpath "$1") runner='timeout -k 1 30' waiting=()
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
cd "$scratch" || exit
mkfifo silence
exec 3<> silence
fail() { echo "FAILED: $*"; cat script.lua stderr; exit 1; }

# ends STATUS PATTERN [OPTION...] < SCRIPT: the exit status, and what standard error begins with or has on a line
ends() {
    cat > script.lua
    $runner "$player" --size 32x24 --frames 20 "${@:3}" script.lua <&3 > /dev/null 2> stderr
    local got=$?
    sed -i '/^frame [0-9]* of [0-9]*$/d' stderr  # how far a slow run is
    ((got == $1)) || fail "exit status $got, not $1"
    [[ $(< stderr) =~ $2 ]] || fail "standard error is not $2"
}

# ---- Errors, with their place
ends 7 '^$' <<< 'frame(3) assert(frame_number() == 3) quit(7) frame() error "after quit the next frame does not come"'
ends 1 '^script.lua:1: .*expected' <<< 'local = 3'
ends 1 '^script.lua:1: load_map: .*nowhere.png: No such file' <<< 'load_map(1, 10, "nowhere.png")'
ends 1 "^script.lua:1: .*nil value \(global 'scrol_start'\) \(did you mean \"scroll_start\"\?\)"$'\n''.*in function <script.lua:1>' \
    <<< 'process(function() scrol_start(0, 1, 10, 0, -1, 0) end)'
ends 1 "^script.lua:1: SCROLL_START: the file holds .* \(error 111, argument 2, value 5\).*in local 'start'.*in main chunk" \
    <<< 'local function start() scroll_start(0, 5, 10, 0, -1, 0) end frame() start()'
ends 1 '^script.lua:1: shot: .*folder/x.png: ' <<< 'os.execute "mkdir folder" shot "folder/x.png" os.execute "rmdir folder" frame()'
for how in 'error "inner"' 'while true do end' 'coroutine.yield()' 'return {}'; do
    ends 1 '^an error that cannot be shown: a table whose __tostring failed: .*in main chunk' --turn-limit 0.2 \
        <<< "error(setmetatable({}, {__tostring = function() $how end}))"
done

# ---- Without memory the line is told, and what was drawn is kept. (Neither the address sanitizer nor
# an emulator, which a script starts the player with, can live with such a limit.)
grep -aqE '__asan_init|^exec ' "$player" || (
    ulimit -v 300000
    ends 1 '^not enough memory.*script.lua:2: in main chunk' --turn-limit 99 --record film.png --every 2 --shots shots \
        <<< $'frame(4)\nlocal t = {} while true do t = {t} end'
    [[ $(tail -c 8 film.png | head -c 4) == IEND && -s shots/frame_00004.png ]] || fail "pictures are lost with the memory"
) || exit

# ---- Turns that do not end: with pcall around, in coroutines, while they make processes, in C, where no hooks run
# endless STATUS PATTERN TURN [OPTION...]: beside the others, since most of its time is spent in waiting
endless() {
    (
        cd "$(mktemp -d -p .)" || exit
        ends "$1" "$2" --record film.png "${@:4}" <<< $'frame(4);\n'"$3"
        [[ $(tail -c 8 film.png | head -c 4) == IEND ]] || fail "the film has no end"
    ) &
    waiting+=($!)
}
late='^script.lua:2: this turn has taken 0.2 s of .*more\)'$'\n'
endless 1 "${late}stack" 'while true do pcall(function() while true do end end) end' --turn-limit 0.2
endless 1 "${late}stack" 'while true do coroutine.resume(coroutine.create(function() while true do end end)) end' --turn-limit 0.2
endless 1 "${late}It does" '("a"):rep(30000):find((".-"):rep(8) .. "b")' --turn-limit 0.2
endless 1 "${late}It does" 'kept = setmetatable({}, {__gc = function() while true do end end}) quit()' --turn-limit 0.2
runner='timeout --foreground --preserve-status -k 20 3'
endless 143 '^script.lua:2: stopped here'$'\n''stack' 'while true do end' --turn-limit 99
endless 143 '^script.lua:2: stopped here'$'\n''It does' 'io.read()' --turn-limit 99
runner='timeout -k 1 30'
ends 1 '^script.lua:1: process: no more than 10000 processes can' <<< 'local function f() process(f) end process(f)'

# ---- Finalizers at the end may ask for anything
ends 0 '^$' <<'LUA'
local p, q = process{}, process{}
kept = setmetatable({}, {__gc = function() p.x = 1 kill(q) assert(not pcall(function() return q.x end)) process{} scroll_stop(all_scroll) end})
quit()
LUA
ends 0 '^Lua warning: error in __gc \(script.lua:1: told\)$' <<< 'kept = setmetatable({}, {__gc = function() error "told" end}) quit()'

# ---- Warnings: once each, with the line, and nothing else
warnings() {
    ends 0 ''
    [[ $(sed 's/^warning: //' stderr) == "$1" ]] || fail "warnings are not: $1"
}
warnings 'script.lua:8: file 1 has no graph 13 (there are: 10 to 12, 20); a process that shows it is not drawn
script.lua:9: there is no file 100: files are numbered 0 to 99; a process that shows it is not drawn
file 1 has no graph 20 (there are: 10 to 12); a process that shows it is not drawn' <<'LUA'
for _, graph in ipairs {10, 11, 12, 20} do new_map(1, graph, 4, 4) end
process {file = 1, graph = 20}
process {file = 1, graph = 14, visible = 0}
local late = process {file = 1, graph = 15}
late.graph = 0
for i = 1, 3 do
    if i == 3 then unload_map(1, 20) end
    process {file = 1, graph = 13}
    process {ctype = c_scroll, file = 100, graph = 1}
    frame()
end
quit()
LUA
warnings 'script.lua:9: scroll_refresh did nothing: scroll 1 is not running
script.lua:10: scroll_set_destination did nothing: file 1 has no graph 45 (there are: 10 to 11)
script.lua:11: scroll_set_destination did nothing: region 3 lies outside the destination
script.lua:6: the global "c_scrol" was never defined (did you mean "c_scroll"?): it is nil
script.lua:7: region 7 is not defined (there are: 0, 3); it is scroll[0].region1
script.lua:8: region 9 is not defined (there are: 0, 3); it is the region of a process
script.lua:13: scroll 0 shows graph 10 of file 1, which was unloaded: the scroll is not drawn' <<'LUA'
new_map(1, 10, 99, 99) new_map(1, 11, 99, 99)
define_region(3, 400, 0, 9, 9)
scroll_start(0, 1, 10, 0, -1, 0)
known = 1 known = nil assert(not known)
for i = 1, 3 do
    assert(not c_scrol)
    scroll[0].region1 = 7
    process {region = 9}
    scroll_refresh(1)
    scroll_set_destination(0, 1, 45, -1)
    scroll_set_destination(0, 0, 0, 3)
    frame()
    unload_map(1, 10)
end
scroll_stop(0) scroll_start(0, 1, 11, 0, -1, 0)
unload_map(1, 11) new_map(1, 11, 99, 99)
frame() quit()
LUA
for each in "${waiting[@]}"; do wait "$each" || exit; done
