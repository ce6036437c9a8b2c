#!/usr/bin/env bash
# Runs one game script through the player and compares what happened with what the script says about itself.
#
# usage: run.sh PLAYER SCRIPT
#
# Comment lines at the script's head:
#   -- options: OPTIONS     a run with these options; several lines are several runs; none is one without options
#   -- status: N            the exit status of each run, 0 unless given
#   -- stderr: REGEX        must be found on standard error; several lines must all be found. Without any,
#                           standard error must stay empty
#   -- lines: N             so many of them are on standard error
# The script finds a folder of its own for files in the environment variable SCRATCH.
set -uo pipefail

player=$1
script=$2
status=$(sed -n 's/^-- status: //p' "$script")
mapfile -t patterns < <(sed -n 's/^-- stderr: //p' "$script")
mapfile -t runs < <(sed -n 's/^-- options: //p' "$script")
((${#runs[@]})) || runs=('')

SCRATCH=$(mktemp -d)
export SCRATCH
trap 'rm -rf "$SCRATCH"' EXIT

fail() {
    echo "FAILED: $(basename "$script") $options: $*"
    sed 's/^/    stderr: /' "$SCRATCH/stderr"
    exit 1
}

for options in "${runs[@]}"; do
    # The options are words of our own scripts; ${SCRATCH} among them is put in here.
    read -ra words <<< "${options//\$SCRATCH/$SCRATCH}"
    "$player" "${words[@]}" "$script" 2> "$SCRATCH/stderr" < /dev/null
    got=$?
    ((got == ${status:-0})) || fail "exit status $got, not ${status:-0}"
    if ((${#patterns[@]} == 0)) && [[ -s $SCRATCH/stderr ]]; then fail "standard error is not empty"; fi
    lines=$(sed -n 's/^-- lines: //p' "$script")
    [[ -z $lines || $(wc -l < "$SCRATCH/stderr") == "$lines" ]] || fail "not $lines lines on standard error"
    for pattern in "${patterns[@]}"; do
        grep -Eq -- "$pattern" "$SCRATCH/stderr" || fail "nothing on standard error matches $pattern"
    done
done
