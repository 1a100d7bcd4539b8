#!/bin/sh
# run.sh LUA SCRIPT: beside a simulated router.
set -eu
tembra-sim run --speed 20 >/dev/null &
router=$!
trap 'kill $router 2>/dev/null || true' EXIT
until tembra-sim status >/dev/null 2>&1; do
  kill -0 $router
  sleep 0.02
done
"$1" "$2"
tembra-sim stop >/dev/null
wait $router
