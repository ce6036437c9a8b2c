# Sourced by the scripts tools/fetch_*.sh: brings what a target needs from Debian's packages into a tree of its own.
#
# Needs neither root nor a foreign architecture on the system: apt works on a state of its own, and packages are unpacked,
# never installed. A tree that exists is whole: it is made aside, and takes its place when nothing is missing any more.
#
# A script says what it fetches and calls fetch_tree:
#   tree        where to
#   contents    what, in words
#   stamp       what the tree is made from; a tree with another stamp is made anew
#   megabytes   the room for lists, packages, and what is in them
#   fill        a function that puts it all into the folder $unpacked, by the functions from read_lists on

. "$(dirname "${BASH_SOURCE[0]}")/setup.sh"

fail() { say "$*"; exit 1; }

is_complete() { [[ -f $tree/.complete && $(< "$tree/.complete") == "$stamp" ]]; }

fetch_tree() {
    state=$tree.apt
    unpacked=$tree.new
    is_complete || alone fetch "fetching $contents" make_tree
}

make_tree() {
    is_complete && return  # by another run, while this one waited
    trap clean_up EXIT
    rm -rf "$state" "$unpacked"
    mkdir -p "$state" "$unpacked"
    ask_for_room
    say "fetching $contents"
    fill
    printf '%s\n' "$stamp" > "$unpacked/.complete"
    rm -rf "$tree"
    mv "$unpacked" "$tree"
}

clean_up() {
    local status=$?
    rm -rf "$state" "$unpacked"
    ((status == 0)) && return
    say "no $contents; the next run tries again"
    exit 1
}

# On a full disk apt waits for ever.
ask_for_room() {
    local free
    free=$(df --output=avail -BM "$state" | tr -dc '0-9')
    ((free >= megabytes)) || fail "$megabytes MB are needed in ${tree%/*}, $free MB are free"
}

# read_lists ARCHITECTURE [deb-src]: from now on packages are of that architecture; with deb-src there are sources, too.
read_lists() {
    local codename kind
    architecture=$1
    mkdir -p "$state/$architecture"/{lists,archives}/partial
    : > "$state/$architecture/status"
    codename=$(. /etc/os-release && echo "${VERSION_CODENAME-}")
    for kind in deb ${2-}; do
        { list_sources "$codename"; list_stanzas "$codename"; } | sed "s/^deb /$kind /"
    done | sort -u > "$state/$architecture/sources.list"
    [[ -s $state/$architecture/sources.list ]] || fail "no source of Debian ${codename:-?} is configured under /etc/apt"
    quietly apt -o APT::Update::Error-Mode=any update || fail "the package lists cannot be read"
}

# download PACKAGE...: these alone. Of a -dev package nothing else is wanted: its dependencies are the headers of every
# library behind it, ten times the size of the rest.
download() {
    (cd "$state/$architecture/archives" && quietly apt download "$@") || fail "the packages cannot be fetched: $*"
}

# download_all PACKAGE...: with what they depend on.
download_all() {
    quietly apt --download-only --yes install "$@" || fail "the packages cannot be fetched: $*"
}

# unpack [NAME...]: what was downloaded, but packages whose name and version match one of these patterns.
unpack() {
    local package name
    for package in "$state/$architecture"/archives/*.deb; do
        for name in "$@"; do
            # shellcheck disable=SC2053  # a pattern
            [[ ${package##*/} != $name ]] || continue 2
        done
        dpkg-deb -x "$package" "$unpacked"
    done
}

# unpack_source PACKAGE: the sources as their authors gave them out, in the folder $unpacked/usr/src/PACKAGE.
unpack_source() {
    local folder=$state/source/$1
    mkdir -p "$folder/files" "$unpacked/usr/src"
    (
        cd "$folder" && quietly apt source --download-only "$1" &&
            cd files && cmake -E tar xf "$(echo ../*.orig.tar.*[a-z2])"
    ) || fail "the source package cannot be fetched: $1"
    mv "$folder"/files/* "$unpacked/usr/src/$1"
}

# One library folder, whether a package means the system's or its own.
join_library_folders() {
    [[ -d $unpacked/lib ]] || return 0
    cp -a "$unpacked/lib/." "$unpacked/usr/lib/"
    rm -rf "$unpacked/lib"
}

# What leads out of a tree is taken back into it, or removed.
keep_links_inside() {
    local link target
    find "$unpacked" -type l -lname '/*' | while read -r link; do
        target=$(readlink "$link")
        target=$unpacked/usr/${target#/}
        target=${target/\/usr\/usr\//\/usr\/}
        if [[ -e $target ]]; then ln -sfr "$target" "$link"; else rm "$link"; fi
    done
}

# Debian ships Dear ImGui's backends as sources among its examples; the player compiles the one it needs.
keep_imgui_backends() {
    mkdir -p "$unpacked/usr/src"
    mv "$unpacked/usr/share/doc/libimgui-dev/examples/backends" "$unpacked/usr/src/imgui_backends"
}

# What no build reads.
drop_documents() { rm -rf "$unpacked"/usr/share/{doc,man,locale,lintian}; }

# What a command says is shown when it fails.
quietly() {
    "$@" > "$state/log" 2>&1 < /dev/null || { cat "$state/log" >&2; return 1; }
}

apt() {
    local own=$state/$architecture
    timeout 900 apt-get -qq \
        -o APT::Architecture="$architecture" -o APT::Architectures="$architecture" -o APT::Install-Recommends=false \
        -o APT::Sandbox::User="$(id -un)" -o Acquire::Languages=none \
        -o Dir::State="$own" -o Dir::State::status="$own/status" -o Dir::State::lists="$own/lists" \
        -o Dir::Cache="$own" -o Dir::Cache::archives="$own/archives" -o Dir::Log="$own" \
        -o Dir::Etc::sourcelist="$own/sources.list" -o Dir::Etc::sourceparts=/dev/null \
        -o Debug::NoLocking=true "$@"
}

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
