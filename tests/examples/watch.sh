#!/bin/sh
# watch.sh KIOSK COMMAND...: the watcher sees in another process what the kiosk does, and ends when the kiosk is done.
set -eu
kiosk=$1
shift
path=/tmp/watching/front-end

if "$@" $path 2>/tmp/said; then exit 1; fi
grep -q "nobody can be watched at $path: No such file" /tmp/said

tembra-sim run --speed 20 >/dev/null &
router=$!
trap 'kill $router 2>/dev/null || true' EXIT
until tembra-sim status >/dev/null 2>&1; do sleep 0.02; done
mkfifo /tmp/requests
"$kiosk" $path </tmp/requests >/tmp/heard &
exec 3>/tmp/requests
echo add >&3
until grep -q waiting /tmp/heard; do sleep 0.02; done
"$@" $path >/tmp/watched &
watcher=$!
until grep -q "^kiosk, process [0-9]*: ADD, BUTTON$" /tmp/watched; do sleep 0.02; done
tembra-sim press zb-plug >/dev/null
exec 3>&-
wait $watcher
cat /tmp/watched
for kind in Answered Reading Found Added "Ended: Done."; do grep -q "ADD $kind" /tmp/watched; done
tembra-sim stop >/dev/null
wait $router
