#!/bin/sh
# programs.sh PREFIX: the installed programs find their libraries and their data where the tree stands.
set -eu
bin=$1/bin
libraries=$(cd "$1" && pwd -P)

for program in tembra-assoc tembra-sim; do
  echo "$program"
  ldd "$bin/$program" | grep 'libTembra.*\.so' | while read -r _ _ library _; do
    case $(readlink -f "$library") in
      "$libraries"/*) ;;
      *) echo "$library is not of this tree" && exit 1 ;;
    esac
  done
  "$bin/$program" --help | grep -Eq "^Usage: .*$program"
done
"$bin/tembra-sim" devices | grep -q '^metering-plug '

settings=$(mktemp)
trap 'rm -f "$settings"' EXIT
echo MeshSlaveID=3 >"$settings"
test "$(TEMBRA_NVRAM=$settings "$bin/nvram_get" 2860 MeshSlaveID)" = 3
