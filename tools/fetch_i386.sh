#!/usr/bin/env bash
# Brings the 32-bit libraries of tools/i386_packages.txt from Debian's i386 packages into a private tree.
#
# usage: fetch_i386.sh [TREE]        TREE defaults to build/i386
#
# Needs neither root nor a foreign architecture on the system: apt works on a state of its own, and packages are
# unpacked, never installed. The C and C++ runtimes stay out of the tree: those come from g++-multilib, and a
# second copy of their headers or libraries would be mixed with the first.
set -euo pipefail

. "$(dirname "$0")/setup.sh"

tree=${1:-$SCROLL2D_ROOT/build/i386}
mapfile -t packages < <(sed 's/#.*//' "$SCROLL2D_ROOT/tools/i386_packages.txt" | xargs -n1)
stamp=$(printf '%s\n' "${packages[@]}")
state=$tree.apt
unpacked=$tree.new
megabytes=120  # for lists, packages and what is in them

fail() { say "$*"; exit 1; }

is_complete() { [[ -f $tree/.complete && $(< "$tree/.complete") == "$stamp" ]]; }

# Binary sources of the release itself and its updates, as one-line entries, from one-line lists.
list_sources() {
    { cat /etc/apt/sources.list /etc/apt/sources.list.d/*.list 2> /dev/null || true; } | awk -v release="$1" '
        $1 == "deb" {
            entry = $0; options = ""
            if (match(entry, /\[[^]]*\]/)) {
                options = substr(entry, RSTART, RLENGTH)
                entry = substr(entry, 1, RSTART - 1) substr(entry, RSTART + RLENGTH)
            }
            signed = match(options, /signed-by=[^] ]+/) ? "[" substr(options, RSTART, RLENGTH) "] " : ""
            n = split(entry, word)
            if (word[3] == release || word[3] == release "-updates")
                for (i = 4; i <= n; i++) if (word[i] == "main") print "deb " signed word[2], word[3], "main"
        }'
}

# The same from stanzas.
list_stanzas() {
    local file
    for file in /etc/apt/sources.list.d/*.sources; do
        [[ -f $file ]] || continue
        sed '/^#/d' "$file" | awk -v release="$1" -v RS= -F'\n' '
            {
                delete field; name = ""
                for (i = 1; i <= NF; i++) {
                    if ($i ~ /^[^ \t:]+:/) { name = tolower($i); sub(/:.*/, "", name); sub(/^[^:]*:/, "", $i) }
                    field[name] = field[name] " " $i
                }
                if (field["enabled"] ~ /no/ || field["types"] !~ /deb( |$)/ || field["components"] !~ / main( |$)/) next
                split(field["signed-by"], key, " ")
                signed = key[1] ~ /^\// ? "[signed-by=" key[1] "] " : ""
                u = split(field["uris"], uri, " "); s = split(field["suites"], suite, " ")
                for (i = 1; i <= u; i++) for (j = 1; j <= s; j++)
                    if (suite[j] == release || suite[j] == release "-updates")
                        print "deb " signed uri[i], suite[j], "main"
            }'
    done
}

apt_i386() {
    timeout 900 apt-get -qq \
        -o APT::Architecture=i386 -o APT::Architectures=i386 -o APT::Install-Recommends=false \
        -o APT::Sandbox::User="$(id -un)" -o Acquire::Languages=none \
        -o Dir::State="$state" -o Dir::State::status="$state/status" -o Dir::State::lists="$state/lists" \
        -o Dir::Cache="$state" -o Dir::Cache::archives="$state/archives" -o Dir::Log="$state" \
        -o Dir::Etc::sourcelist="$state/sources.list" -o Dir::Etc::sourceparts=/dev/null \
        -o Debug::NoLocking=true "$@"
}

# The packages, into the archives of apt's state.
download() {
    local codename headers libraries
    codename=$(. /etc/os-release && echo "${VERSION_CODENAME-}")
    { list_sources "$codename"; list_stanzas "$codename"; } | sort -u > "$state/sources.list"
    [[ -s $state/sources.list ]] || fail "no source of Debian ${codename:-?} is configured under /etc/apt"
    say "fetching 32-bit libraries: ${packages[*]}"
    apt_i386 -o APT::Update::Error-Mode=any update || fail "the package lists cannot be read"
    # Libraries come with what they depend on. Of a -dev package only the package itself is wanted: its dependencies
    # are the headers of every library behind it, ten times the size of the rest.
    mapfile -t headers < <(printf '%s\n' "${packages[@]}" | grep -e '-dev$')
    mapfile -t libraries < <(printf '%s\n' "${packages[@]}" | grep -v -e '-dev$')
    (
        apt_i386 --download-only --yes install "${libraries[@]}" &&
        cd "$state/archives" && apt_i386 download "${headers[@]}"
    ) > "$state/log" 2>&1 || { cat "$state/log" >&2; fail "the packages cannot be fetched"; }
}

# The packages' files, in one tree.
unpack() {
    local package link target
    for package in "$state"/archives/*.deb; do
        case $(basename "$package") in
            libc6_* | libc6-* | libc-* | libcrypt* | libgcc-s1_* | libstdc++* | gcc-*-base_* | linux-libc-dev_*) continue ;;
        esac
        dpkg-deb -x "$package" "$unpacked"
    done

    # One library folder, and no link that leads out of the tree.
    if [[ -d $unpacked/lib ]]; then
        cp -a "$unpacked/lib/." "$unpacked/usr/lib/"
        rm -rf "$unpacked/lib"
    fi
    find "$unpacked" -type l -lname '/*' | while read -r link; do
        target=$(readlink "$link")
        target=$unpacked/usr/${target#/}
        target=${target/\/usr\/usr\//\/usr\/}
        if [[ -e $target ]]; then ln -sfr "$target" "$link"; else rm "$link"; fi
    done
    # Debian ships Dear ImGui's backends as sources among its examples; the player compiles the one it needs.
    mkdir -p "$unpacked/usr/src"
    mv "$unpacked/usr/share/doc/libimgui-dev/examples/backends" "$unpacked/usr/src/imgui_backends"
    rm -rf "$unpacked/usr/share/doc" "$unpacked/usr/share/man" "$unpacked/usr/share/locale"
}

clean_up() {
    local status=$?
    rm -rf "$state" "$unpacked"
    ((status == 0)) && return
    say "no 32-bit libraries; the next run tries again"
    exit 1
}

# On a full disk apt waits for ever.
ask_for_room() {
    local free
    free=$(df --output=avail -BM "$state" | tr -dc '0-9')
    ((free >= megabytes)) || fail "$megabytes MB are needed in ${tree%/*}, $free MB are free"
}

fetch() {
    is_complete && return  # by another run, while this one waited
    trap clean_up EXIT
    rm -rf "$state" "$unpacked"
    mkdir -p "$state/lists/partial" "$state/archives/partial" "$unpacked"
    ask_for_room
    : > "$state/status"
    download
    unpack
    printf '%s\n' "$stamp" > "$unpacked/.complete"
    rm -rf "$tree"
    mv "$unpacked" "$tree"
}

if ! is_complete; then
    alone fetch "fetching the 32-bit libraries" fetch
fi
