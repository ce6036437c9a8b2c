#!/usr/bin/env bash
# Runs one game script through the player, once for each line "-- options: OPTIONS" at its head, or once without options.
# Its assertions must hold and standard error must stay empty. It finds a folder of its own in the variable SCRATCH.
#
# usage: run.sh PLAYER SCRIPT
set -uo pipefail
player=$1 script=$2
mapfile -t runs < <(sed -n 's/^-- options: //p' "$script")
SCRATCH=$(mktemp -d)
export SCRATCH
trap 'rm -rf "$SCRATCH"' EXIT
for options in "${runs[@]:-}"; do
    # shellcheck disable=SC2086  # the options are words of our own scripts
    "$player" $options "$script" 2> "$SCRATCH/stderr" < /dev/null &&
        ! grep -qvE '^frame [0-9]+ of [0-9]+$' "$SCRATCH/stderr" && continue  # how far a slow run is, is no complaint
    echo "FAILED: $(basename "$script") $options"
    cat "$SCRATCH/stderr"
    exit 1
done
