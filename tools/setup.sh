# Sourced by ./play, ./check and tools/fetch.sh: brings a Debian 12 machine to the point where the presets configure and
# build. Installs only what is missing, and asks for nothing.

SCROLL2D_ROOT=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
readonly SCROLL2D_ROOT

# What the system itself must provide: to module, host and their tests on every target, to those of this machine, and to
# the player beside the libraries of its target.
readonly SCROLL2D_PACKAGES=(g++ cmake ninja-build doctest-dev python3-pil)
readonly SCROLL2D_NATIVE_PACKAGES=(g++-multilib pkgconf python3-pyelftools)
readonly SCROLL2D_PLAYER_PACKAGES=(libcli11-dev libstb-dev ca-certificates)

say() { echo "${0##*/}: $*" >&2; }

# alone LOCK WORK COMMAND...: runs the command while no other process of this tree holds that lock. Who waits says so, and
# for what.
alone() {
    local file=$SCROLL2D_ROOT/build/.$1 work=$2 lock status
    shift 2
    mkdir -p "${file%/*}" || return
    exec {lock}>> "$file" || return
    if ! flock --nonblock "$lock"; then
        say "waiting for another run: $(tail -n 1 "$file")"
        until flock --timeout 10 "$lock"; do say "still waiting, after $SECONDS s: $(tail -n 1 "$file")"; done
    fi
    echo "${0##*/} (process $$) is $work" > "$file"
    "$@" {lock}>&-  # what it leaves running holds no lock
    status=$?
    exec {lock}>&-
    return "$status"
}

missing_packages() {
    local package
    for package in "$@"; do
        dpkg -s "$package" 2> /dev/null | grep -q '^Status: install ok installed' || echo "$package"
    done
}

# install_packages PACKAGE...: those that are missing.
install_packages() {
    local missing as_root=() log
    if ! command -v dpkg > /dev/null; then
        say "this script knows Debian 12 only"
        return 1
    fi
    mapfile -t missing < <(missing_packages "$@")
    ((${#missing[@]})) || return 0
    if ((EUID != 0)); then
        if ! command -v sudo > /dev/null; then
            say "these packages are missing, and this user is neither root nor has sudo: ${missing[*]}"
            say "ask for: apt-get install --no-install-recommends ${missing[*]}"
            return 1
        fi
        as_root=(sudo)
    fi
    say "installing ${missing[*]}"
    log=$(mktemp) || return
    if ! { "${as_root[@]}" apt-get -q update &&
           "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -qy -o DPkg::Lock::Timeout=600 \
               install --no-install-recommends "${missing[@]}"; } > "$log" 2>&1 < /dev/null; then
        cat "$log" >&2
        rm -f "$log"
        say "could not be installed: ${missing[*]}"
        return 1
    fi
    rm -f "$log"
}

# add_packages PACKAGE...: install_packages, one run at a time.
add_packages() { alone setup "installing packages" install_packages "$@"; }

# All that the presets of this machine build with. Fails when something is missing.
set_up() {
    add_packages "${SCROLL2D_PACKAGES[@]}" "${SCROLL2D_NATIVE_PACKAGES[@]}" "${SCROLL2D_PLAYER_PACKAGES[@]}" &&
        "$SCROLL2D_ROOT/tools/fetch_i386.sh"
}

# Whether the build tree of a preset was configured here: a copied or moved one still means the old place.
is_configured_here() {
    local cache=$SCROLL2D_ROOT/build/$1/CMakeCache.txt folder
    [[ -f $cache ]] || return
    for folder in HOME_DIRECTORY:$SCROLL2D_ROOT CACHEFILE_DIR:${cache%/*}; do
        [[ $(sed -n "s/^CMAKE_${folder%%:*}:INTERNAL=//p" "$cache") -ef ${folder#*:} ]] || return
    done
}

# Ninja's lines, compact where nobody watches: one for each tenth of the way.
every_tenth() {
    awk 'match($0, /^\[[0-9]+\/[0-9]+\]/) {
            split(substr($0, 2, RLENGTH - 2), part, "/")
            if (int(10 * part[1] / part[2]) > tenth) {
                tenth = int(10 * part[1] / part[2])
                print $0
                fflush()
            }
        }'
}

# build_preset PRESET [TARGET...]: configures and builds, all targets unless some are named, while no other run does.
build_preset() {
    local status=0
    alone lock "building: $1" configure_and_build "$@" || status=$?
    ((status == 0)) || say "the $1 build failed"
    return "$status"
}

configure_and_build() {
    local preset=$1 fresh=() targets=() log status
    shift
    (($# == 0)) || targets=(--target "$@")
    [[ ! -f $SCROLL2D_ROOT/build/$preset/CMakeCache.txt ]] || is_configured_here "$preset" || fresh=(--fresh)
    log=$(mktemp) && cd "$SCROLL2D_ROOT" || return
    if cmake --preset "$preset" "${fresh[@]}" > "$log" 2>&1 < /dev/null; then
        grep '^-- No ' "$log" >&2  # what is left out, and why
        run_build "$log" --preset "$preset" "${targets[@]}"
        status=$?
    else
        cat "$log" >&2
        status=1
    fi
    rm -f "$log"
    cd - > /dev/null || return
    return "$status"
}

# run_build LOG OPTION...: on a terminal ninja's own line of progress; elsewhere a few lines, and when it fails, what the
# failing steps said.
run_build() {
    local log=$1 status
    shift
    if [[ -t 2 ]]; then
        cmake --build "$@" >&2 < /dev/null
        return
    fi
    cmake --build "$@" 2>&1 < /dev/null | tee "$log" | every_tenth | tee -a "$SCROLL2D_ROOT/build/.lock" >&2
    status=${PIPESTATUS[0]}
    ((status == 0)) || grep -vE '^(\[[0-9]+/[0-9]+\]|--) ' "$log" >&2
    return "$status"
}
