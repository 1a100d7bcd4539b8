#!/usr/bin/env bash
# usage: cross.sh [--without-tests] [CPU...]: builds everything for other CPUs, in build/cross/CPU, with Debian's cross
# compilers. It runs the demonstration, checks what a router gets, and runs the tests, with an emulator where this machine
# needs one. --without-tests builds library, kit and programs only, and leaves out the tests. Default: i386 armhf arm64 mipsel.
set -euo pipefail
cd "$(dirname "$(readlink --canonicalize "${BASH_SOURCE[0]}")")/.."

tests=ON
if [[ ${1-} == --without-tests ]]; then
  tests=OFF
  shift
fi
(($# > 0)) || set -- i386 armhf arm64 mipsel
jobs=$(nproc)

# exceptions CPU: the pattern of the tests that do not pass there.
exceptions() {
  local where="all|$1"
  [[ $1 == i386 ]] || where+="|emulated"
  [[ $1 == arm64 ]] || where+="|32-bit"
  sed --quiet --regexp-extended "s/^($where) +([^ ]+) .*/\2/p" scripts/cross_exceptions | paste --serial --delimiters='|'
}

for cpu; do
  folder=$PWD/build/cross/$cpu
  root=$folder/root
  if [[ ! -e $folder/root.complete ]]; then
    scripts/cross_root.sh "$cpu" "$root"
    touch "$folder/root.complete"
  fi
  cmake -S . -B "$folder/build" -G Ninja --toolchain "$PWD/cmake/toolchains/$cpu.cmake" \
    -DCMAKE_BUILD_TYPE=RelWithDebInfo -DCMAKE_CXX_FLAGS_RELWITHDEBINFO=-O1 -DCMAKE_UNITY_BUILD=ON \
    -DCMAKE_UNITY_BUILD_BATCH_SIZE=0 -DTEMBRA_TESTS=$tests -DCMAKE_CXX_COMPILER_LAUNCHER=ccache
  cmake --build "$folder/build" --parallel "$jobs"
  scripts/in_foreign.sh "$cpu" "$root" "$folder/build/bin/tembra-isolate" scripts/demo.sh "$folder/build/bin" \
    >"$folder/demo.log" 2>&1 || { cat "$folder/demo.log" && exit 1; }
  echo "$cpu: the demonstration went as it should"
  tests/packaging/router.sh "$folder/router" "$cpu"
  [[ $tests == ON ]] || continue
  scripts/in_foreign.sh "$cpu" "$root" ctest --test-dir "$folder/build" --output-on-failure --no-tests=error \
    --parallel $((jobs * 4)) --label-exclude '^(packaging|limits|python|lua)$' \
    --exclude-regex "$(exceptions "$cpu")"
done
