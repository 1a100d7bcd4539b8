#!/usr/bin/env bash
# small_stack.sh PROGRAMS [KIB]: every kind of operation with 128 KiB of stack for the main thread, the kit's threads and the
# receive thread: as much as a thread gets by default in the C library of most small routers.
set -euo pipefail
PATH=$1:$PATH
readonly kib=${2:-128}
export TEMBRA_LOG=off

folder=$(mktemp --directory)
cd "$folder"
tembra-sim run --speed 50 --authcode "$folder/authcode" >/dev/null 2>sim.log &
router=$!
trap 'cat sim.log; kill $router 2>/dev/null || true; rm --recursive "$folder"' EXIT
until tembra-sim status >/dev/null 2>&1; do kill -0 $router; sleep 0.02; done

# assoc ARG...: the C library gives new threads as much stack as the limit of the main thread's.
assoc() {
  echo "tembra-assoc $*"
  (ulimit -S -s "$kib" && exec tembra-assoc "$@") || { echo "status $?"; exit 1; }
}

# with_button DEVICE ARG...: its button is pressed while the command waits. Whatever fails, nobody presses after the router
# has ended: a loop that is left over would keep the output open, and CTest would wait for it.
with_button() {
  { until tembra-sim press "$1" >/dev/null 2>&1 || ! kill -0 $router 2>/dev/null; do sleep 0.02; done; } &
  assoc "${@:2}"
  wait $!
}

with_button multilevel-sensor add --yes
with_button zb-contact add --yes
with_button multilevel-sensor remove --yes
assoc hue discover
with_button hue-button hue add 02:a1:b2:0c:00:01
assoc hue list
assoc nest link - --role web <<<a-code
assoc reset zigbee --yes
assoc devices --json
tembra-sim stop
wait $router
