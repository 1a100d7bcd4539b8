#!/usr/bin/env bash
# A short run says something of every figure and draws every curve. How fast anything is does not matter.
# usage: short_test.sh PROGRAMS FOLDER     as measure.sh
set -euo pipefail
readonly programs=$1 folder=$2
readonly figures=13 curves="known-node next-id bridge-list"

fail() {
  echo "$1" >&2
  exit 1
}

rm --recursive --force "$folder"
mkdir -p "$folder"
"$(dirname "${BASH_SOURCE[0]}")/measure.sh" "$programs" "$folder" --short 2>"$folder/errors" || fail "$(<"$folder/errors")"
[[ ! -s $folder/errors ]] || fail "The measurements complain: $(head --lines=3 "$folder/errors")"

for ((figure = 1; figure <= figures; ++figure)); do
  grep --extended-regexp --quiet "^ *$figure  .*  [<>]= .*  (NOT MET|met)$" "$folder/latest.txt" ||
    fail "The table has no goal for figure $figure"
  grep --quiet "\"number\": $figure,\?$" "$folder/latest.json" || fail "The JSON has no figure $figure"
done
for curve in $curves; do
  (($(grep --count '<path' "$folder/$curve.svg") >= 2)) || fail "The curve of $curve has no two lines"
done
