#!/usr/bin/env bash
# demo.sh PROGRAMS: the demonstration itself, with the programs of that folder. Exit status 0 when all went as it
# should, the simulated router's policing included.
set -euo pipefail

folder=$(mktemp --directory)
readonly folder
cd "$folder"
read -r TEMBRA_TIMELINE_START _ </proc/uptime
export PATH=$1:$PATH TEMBRA_TIMELINE_START TEMBRA_TIMELINE=1 TEMBRA_NVRAM=$folder/settings
echo MeshSlaveID=0 >"$TEMBRA_NVRAM"
readonly control=(--control "$folder/sim.sock")
readonly database=(--db ddb)

tidy_up() {
  if [[ -n ${router-} ]]; then kill "$router" 2>/dev/null || true; fi
  rm --recursive --force "$folder"
}
trap tidy_up EXIT

headline() { printf '\n== %s\n' "$*"; }

start_router() {
  tembra-sim run --timeline --latency 700 --authcode "$folder/authcode" "${database[@]}" "${control[@]}" &
  router=$!
  until tembra-sim status "${control[@]}" >/dev/null 2>&1; do
    kill -0 "$router"
    sleep 0.1
  done
}

stop_router() {
  tembra-sim stop "${control[@]}" >/dev/null
  wait "$router"
  router=
}

# The user presses a device's button a moment after giving the command.
press_soon() {
  { sleep 1.5 && tembra-sim press "$1" "${control[@]}" >/dev/null; } &
}

assoc() { tembra-assoc "${database[@]}" "$@"; }

headline "The router starts"
start_router

headline "A plug that meters its load is added; its type is one of two"
press_soon metering-plug
assoc add --type MeterSwitch --name "Washing machine" --place Bathroom

headline "A sensor of several values is added as what it is used for"
press_soon multilevel-sensor
assoc add --type LuminanceSensor --name "Light at the door" --place Porch

headline "A ZigBee contact is added; whichever radio answers, the other is told to stop"
press_soon zb-contact
assoc add --name "Front door" --place Porch

headline "A device of no known kind is added as a generic one, under the name that is proposed"
press_soon chime
assoc add --yes

headline "The plug is added once more, and is known already"
press_soon metering-plug
if assoc add --yes; then
  echo "A known device was added a second time." >&2
  exit 1
fi

headline "The sensor is removed"
press_soon multilevel-sensor
assoc remove --yes

headline "The Hue bridges of the home are looked for"
assoc hue discover

headline "A Hue bridge is added by its link button and brings its bulb"
press_soon hue-button
assoc hue add 02:a1:b2:0c:00:01
assoc hue list

headline "A Nest account is linked; the web server lets go of the connection after each answer"
assoc nest link - --role web <<<an-authorisation-code

headline "The devices of the database"
stop_router
assoc devices
