#!/bin/sh
# The shared library exports exactly the functions that the public header
# declares with OX_API: nothing internal leaks, nothing declared is missing.
# Usage: exports_test.sh PATH_TO_LIBOX_SO PATH_TO_OX_H
set -eu
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
nm -D --defined-only "$1" | awk '$2 == "T" || $2 == "W" || $2 == "D" || $2 == "B" { sub(/@.*/, "", $3); print $3 }' |
    sort > "$scratch/exported"
grep -E '^OX_API' "$2" | grep -oE 'ox_[a-z0-9_]+ *\(' | tr -d ' (' | sort > "$scratch/declared"
if ! cmp -s "$scratch/exported" "$scratch/declared"; then
    echo "exported (<) and declared (>) differ:" >&2
    diff "$scratch/exported" "$scratch/declared" >&2
    exit 1
fi
echo "exports: $(wc -l < "$scratch/declared") functions, as declared"
