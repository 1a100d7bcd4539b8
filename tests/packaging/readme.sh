#!/bin/sh
# readme.sh PAGE PACKAGE STANDARDS PREFIX WORK SCENARIO ISOLATE COMPILER [FLAG...]: the front end that the page shows
# compiles without a warning in these C++ standards, and adds a device of the simulated router.
set -eu
page=$1
package=$2
standards=$3
prefix=$4
work=$5
scenario=$6
isolate=$7
compiler=$8
shift 8

mkdir -p "$work"
# shellcheck disable=SC2016 # nothing is to be expanded
sed -n '/^```cpp$/,/^```$/p' "$page" | sed '/^```/d' >"$work/front_end.cpp"
PKG_CONFIG_PATH=$(dirname "$(find "$prefix" -name "$package.pc")")
export PKG_CONFIG_PATH
cflags=$(pkg-config --cflags "$package")
libs="$(pkg-config --libs "$package") -Wl,-rpath,$(pkg-config --variable=libdir "$package")"

for standard in $standards; do
  echo "c++$standard"
  # shellcheck disable=SC2086 # several words each
  "$compiler" -std=c++$standard -Wall -Wextra -Wpedantic -Wconversion -Werror "$@" $cflags "$work/front_end.cpp" \
    -o "$work/front-end" $libs -pthread
done

# The HA server stores a device a moment after the front end has handed it over. Whatever fails, the simulator ends: a
# program that is left over would keep the output open, and CTest would wait for it.
# shellcheck disable=SC2016 # expanded inside
commands=$(dirname "$(find "$prefix" -name nvram_get)")
PATH=$prefix/bin:$PATH:$commands TEMBRA_LOG=off timeout 60 "$isolate" sh -euc '
  tembra-sim run --speed 20 --scenario "$2" >/tmp/sim.log 2>&1 &
  trap "cat /tmp/sim.log; kill $! 2>/dev/null || true" EXIT
  until tembra-sim status >/dev/null 2>&1; do kill -0 $!; sleep 0.02; done
  "$1"
  until tembra-assoc devices | grep "^1 "; do sleep 0.02; done
  tembra-sim stop
  wait $!
' sh "$work/front-end" "$scenario"
