#!/usr/bin/env bash
# Installs the peers into a build folder and times the library beside them, in turns.
# usage: measure.sh BUILD FOLDER     BUILD: has bin/tembra-peer; FOLDER: gets peers.txt
set -euo pipefail
readonly build=$1 folder=$2 devices=${TEMBRA_CORPUS:-}/zigbee_real.json
here=$(dirname "${BASH_SOURCE[0]}")
readonly here
command -v npm >/dev/null || { echo "Node.js 20 or later with npm is needed." >&2; exit 1; }
[[ -r $devices ]] || { echo "TEMBRA_CORPUS has to name the folder with zigbee_real.json." >&2; exit 1; }

mkdir -p "$build/peers"
cp "$here/package.json" "$here/compare.js" "$build/peers/"
npm install --prefix "$build/peers" --ignore-scripts --no-audit --no-fund --loglevel=error
node "$build/peers/compare.js" "$build/bin/tembra-peer" "$devices" | tee "$build/peers.txt"
cp "$build/peers.txt" "$folder/"
