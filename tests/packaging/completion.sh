#!/usr/bin/env bash
# completion.sh PREFIX: in bash, the installed completion knows what the installed programs know.
set -euo pipefail
prefix=$1
export PATH=$prefix/bin:$PATH
folder=$(mktemp --directory)
trap 'rm --recursive --force "$folder"' EXIT
touch "$folder/evening.json" "$folder/evening.txt"
cd "$folder"

# completed WORD...: what is offered in the last one's place, sorted.
completed() {
  COMP_WORDS=("$@")
  COMP_CWORD=$(($# - 1))
  COMPREPLY=()
  local registered
  registered=$(complete -p "${1##*/}")
  [[ $registered == *"-F _tembra "* ]] || fail "no completion of $1: $registered"
  _tembra "$1" "${COMP_WORDS[COMP_CWORD]}" "${COMP_WORDS[COMP_CWORD - 1]}"
  printf '%s\n' "${COMPREPLY[@]}" | LC_ALL=C sort | paste --serial --delimiters=' '
}

fail() {
  echo "completion: $*" >&2
  exit 1
}

# expect OFFERED WORD...
expect() {
  local offered
  offered=$(completed "${@:2}")
  [[ $offered == "$1" ]] || fail "\"${*:2}\" offers \"$offered\" and not \"$1\""
}

# commands_of PROGRAM WORD...: as its help has them.
commands_of() {
  "$@" --help | sed --quiet '/^Subcommands:/,/^$/s/^  \([^ ]*\) .*/\1/p' | LC_ALL=C sort | paste --serial --delimiters=' '
}

for program in tembra-assoc tembra-daemon-check tembra-isolate tembra-platform-check tembra-sim; do
  complete -r
  # shellcheck disable=SC1090
  source "$prefix/share/bash-completion/completions/$program"
  completed $program - >offered
  grep --quiet -- --version offered || fail "$program - offers $(cat offered)"
done

expect "$(commands_of tembra-assoc)" tembra-assoc ''
expect "$(commands_of tembra-assoc hue)" tembra-assoc --json hue ''
expect "$(commands_of tembra-sim)" "$prefix/bin/tembra-sim" ''
expect "cancel" tembra-assoc ca
expect "add add-bulb" tembra-assoc help hue a
expect "--name" tembra-assoc add --na
expect "--verbose --version" tembra-assoc hue list --ver
expect "" tembra-assoc add --nothing
expect "$(commands_of tembra-assoc)" tembra-assoc --help ''
expect "cloud" tembra-assoc --role cl
expect "lcd" tembra-assoc add --role = l
expect "LuminanceSensor" tembra-assoc add --type Lum
expect "device-types" tembra-assoc names dev
expect "" tembra-assoc names device-types ev
expect "device-types" tembra-assoc names d
expect "clock connection" tembra-assoc doctor --skip c
expect "port" tembra-assoc doctor --skip clock --skip po
expect "metering-plug" tembra-sim press metering
expect "evening.json" tembra-sim run --scenario ev
expect "evening.json evening.txt" tembra-assoc classify ev
expect "hue nest zigbee zwave" tembra-sim run --without ''
expect "" tembra-sim run --latency ''
expect "zigbee zwave" tembra-daemon-check z
expect "tembra-isolate" tembra-isolate tembra-iso
expect "metering-plug" tembra-isolate --speed 90 tembra-sim press metering
