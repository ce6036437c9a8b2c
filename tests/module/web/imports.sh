#!/usr/bin/env bash
# The functions that the linked module asks its program for are malloc, free and memcpy. (The rest of what it lacks is what
# every object shares: the stack pointer and the table of functions.)
#
# usage: imports.sh OBJECT
set -euo pipefail
found=$(emnm --undefined-only --just-symbol-name "$1" | sort | xargs)
[[ $found == "__indirect_function_table __stack_pointer free malloc memcpy" ]] || { echo "$1 lacks: $found"; exit 1; }
