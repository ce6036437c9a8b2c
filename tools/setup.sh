# Sourced by ./play and ./check: brings a Debian 12 machine to the point where the presets configure and build.
# Installs only what is missing, and asks for nothing.

SCROLL2D_ROOT=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
readonly SCROLL2D_ROOT

# What the system itself must provide; the 32-bit libraries come from tools/i386_packages.txt.
readonly SCROLL2D_SYSTEM_PACKAGES=(
    g++ g++-multilib cmake ninja-build doctest-dev libcli11-dev libstb-dev python3-pil
    ca-certificates)

say() { echo "${0##*/}: $*" >&2; }

missing_system_packages() {
    local package
    for package in "${SCROLL2D_SYSTEM_PACKAGES[@]}"; do
        dpkg -s "$package" 2> /dev/null | grep -q '^Status: install ok installed' || echo "$package"
    done
}

install_system_packages() {
    local missing as_root=()
    mapfile -t missing < <(missing_system_packages)
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
    local log
    log=$(mktemp)
    if ! { "${as_root[@]}" apt-get -q update &&
           "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
               apt-get -qy install --no-install-recommends "${missing[@]}"; } > "$log" 2>&1 < /dev/null; then
        cat "$log" >&2
        rm -f "$log"
        say "the packages could not be installed"
        return 1
    fi
    rm -f "$log"
}

set_up() {
    if ! command -v dpkg > /dev/null; then
        say "this script knows Debian 12 only"
        return 1
    fi
    install_system_packages && "$SCROLL2D_ROOT/tools/fetch_i386.sh"
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

# build_preset PRESET [TARGET...]: configures and builds, all targets unless some are named. On a terminal ninja's
# own line of progress; elsewhere a few lines. When it fails, what the failing steps said.
build_preset() {
    local preset=$1 log targets=() status
    shift
    (($# == 0)) || targets=(--target "$@")
    log=$(mktemp)
    cd "$SCROLL2D_ROOT" || return 1
    if ! cmake --preset "$preset" > "$log" 2>&1 < /dev/null; then
        cat "$log" >&2
        status=1
    elif [[ -t 2 ]]; then
        cmake --build --preset "$preset" "${targets[@]}" >&2 < /dev/null
        status=$?
    else
        cmake --build --preset "$preset" "${targets[@]}" 2>&1 < /dev/null | tee "$log" | every_tenth >&2
        status=${PIPESTATUS[0]}
        ((status == 0)) || sed -n '/^FAILED:/,$p' "$log" | grep -v '^\[[0-9]*/[0-9]*\] ' >&2
    fi
    cd - > /dev/null || return 1
    rm -f "$log"
    ((status == 0)) || say "the $preset build failed"
    return "$status"
}
