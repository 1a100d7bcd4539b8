#!/usr/bin/env bash
# Measures with what is built: a table on standard output, the same as latest.txt and latest.json in a folder, and the
# scaling curves. A run that fails leaves the folder as it was.
# usage: measure.sh PROGRAMS FOLDER [OPTION...]     PROGRAMS: the folder of tembra-bench and tembra-isolate
#                                                   OPTION: of tembra-bench
set -euo pipefail
readonly programs=$1 folder=$2
here=$(dirname "${BASH_SOURCE[0]}")
mkdir -p "$folder"

# The curves' data is of no use once they are drawn.
data=$(mktemp --directory --tmpdir="$programs/..")
readonly here data
trap 'rm --recursive --force "$data"' EXIT

# The addresses and the database path are the real ones, so there is no measuring without namespaces.
"$programs/tembra-isolate" "$programs/tembra-bench" "${@:3}" --output "$data" | tee "$data/latest.txt"
for curve in "$data"/*.dat; do
  name=$(basename "$curve" .dat)
  gnuplot -e "data='$curve'; picture='$data/$name.svg'; name='${name//-/ }'" "$here/curve.gnuplot"
done
cp "$data"/latest.json "$data"/latest.txt "$data"/*.svg "$folder/"
