#!/usr/bin/env bash
# isolate.sh PROGRAMS VERSION: tembra-isolate answers questions, refuses what it does not know, and hurries the library,
# and nothing but the library.
set -euo pipefail
readonly version=$2
PATH=$1:$PATH
export TEMBRA_LOG=off
said=$(mktemp)
trap 'rm --force "$said"' EXIT

# expect STATUS TEXT ARG...: tembra-isolate ends with this status and says this.
expect() {
  local status=0
  tembra-isolate "${@:3}" >"$said" 2>&1 </dev/null || status=$?
  if [[ $status != "$1" || $(<"$said") != *"$2"* ]]; then
    echo "tembra-isolate ${*:3}: status $status instead of $1, or not \"$2\":" >&2
    cat "$said" >&2
    exit 1
  fi
}

# expect_milliseconds LEAST MOST: since `started`.
expect_milliseconds() {
  local took=$((($(date +%s%N) - started) / 1000000))
  ((took >= $1 && took <= $2)) || { echo "took $took ms instead of $1 to $2" >&2; exit 1; }
}

expect 0 "usage: tembra-isolate [--speed N] COMMAND" --help
expect 0 "tembra-isolate $version" --version
expect 2 "no command"
expect 2 "no option --spede" --spede 3 true
for speed in "" 0 -1 1.5 100001 9999999999999999999 fast; do
  expect 2 "--speed takes a number" --speed "$speed" true
done
expect 2 "--speed takes a number" --speed
expect 126 "No such file" /no/such/program
expect 7 "" sh -c 'exit 7'
expect 0 "--help" printf '%s\n' --help  # options behind the command are the command's

# Front ends inside meet nobody outside.
# shellcheck disable=SC2016 # expanded inside
expect 0 "/tmp/tembra/front-end" sh -c 'echo "$TEMBRA_WATCH_PATH"'
# shellcheck disable=SC2016 # expanded inside
TEMBRA_WATCH_PATH=/tmp/another expect 0 "/tmp/another" sh -c 'echo "$TEMBRA_WATCH_PATH"'

# The library's three minutes.
started=$(date +%s%N)
# shellcheck disable=SC2016 # expanded inside
expect 1 "No device answered in time" --speed 100 sh -c '
  tembra-sim run >/dev/null 2>&1 &
  until tembra-sim status >/dev/null 2>&1; do sleep 0.02; done
  tembra-assoc add </dev/null
  status=$?
  tembra-sim stop
  exit $status'
expect_milliseconds 1800 20000

# The nine seconds of a reset.
started=$(date +%s%N)
expect 0 "" --speed 100 sh -c '
  tembra-sim run >/dev/null 2>&1 &
  until tembra-sim status >/dev/null 2>&1; do sleep 0.02; done
  tembra-assoc reset both --yes && tembra-sim stop'
expect_milliseconds 80 8000

# A wait of another program.
started=$(date +%s%N)
expect 0 "" --speed 1000 sleep 0.5
expect_milliseconds 500 10000
