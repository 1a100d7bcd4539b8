#!/usr/bin/env bash
# router.sh WORK [CPU]: the presets for routers keep what they promise. Their libraries are small, their pages have 4 KiB,
# the binary interface is the stored one, and an exception of the router's Logger passes through a library that has a
# libstdc++ of its own. For another CPU than this machine's, its libraries lie in WORK/../root. Takes the project's folder
# as the current one.
set -euo pipefail
source=$PWD
mkdir -p "$1"
work=$(cd "$1" && pwd)
machine=$(uname -m)
cpu=${2:-${machine/x86_64/x86-64}}
toolchain=()
run=()
if (($# > 1)); then
  toolchain=(--toolchain "$source/cmake/toolchains/$cpu.cmake")
  run=(scripts/in_foreign.sh "$cpu" "$(dirname "$work")/root")
fi

fail() {
  echo "router, $cpu: $*" >&2
  exit 1
}

# logged COMMAND...: what it says is of interest only when it fails.
logged() {
  "$@" >"$work/log" 2>&1 || { cat "$work/log" >&2; fail "$*"; }
}

# build FOLDER PRESET SOURCE [OPTION...]
build() {
  (cd "$3" && logged cmake --preset "$2" -B "$work/$1" "${toolchain[@]}" -DTEMBRA_PROGRAMS=OFF -DCMAKE_CXX_FLAGS=-g \
    -DCMAKE_INSTALL_PREFIX=/usr -DCMAKE_CXX_COMPILER_LAUNCHER=ccache -DCMAKE_COMPILE_WARNING_AS_ERROR=ON "${@:4}")
  logged cmake --build "$work/$1" --target TembraAssoc --parallel "$(nproc)"
}

# installed: the three libraries as a router gets them.
installed() {
  rm -rf "$work/stage"
  logged cmake --build "$work/build" --parallel "$(nproc)"
  DESTDIR=$work/stage logged cmake --install "$work/build" --strip
  find "$work/stage" -name "lib$1.so.*.*.*"
}

# check_sizes COLUMN: of the first library in the table. The page has the same figures.
check_sizes() {
  local column=$1 library measured here
  for library in TembraAssoc tembra-frontend TembraPlatform; do
    measured=$(awk -v cpu="$cpu" -v column="$column" '$1 == cpu { print $column }' tests/limits/router_sizes)
    [[ -n $measured ]] || { echo "router: there are no sizes of $cpu in tests/limits/router_sizes" && return; }
    here=$(stat --format %s "$(installed $library)")
    echo "$cpu: lib$library.so has $here bytes, of at most $((measured * 11 / 10))"
    ((here <= measured * 11 / 10)) || fail "lib$library.so has grown from $measured to $here bytes"
    [[ $library == TembraPlatform ]] || grep --quiet "^| $cpu .* ${measured%???} ${measured: -3} " platform/PORTING.md ||
      fail "platform/PORTING.md has another size of lib$library.so than tests/limits/router_sizes"
    column=$((column + 1))
  done
}

build build router "$source"
check_sizes 2
segments=$(readelf --program-headers --wide "$(installed TembraAssoc)" | awk '$1 == "LOAD" { print $NF }' | sort -u)
[[ $segments == 0x1000 ]] || fail "the pages have $segments bytes"

# A field more in the object is found, although the object keeps its size.
tests/packaging/abi.sh "$work/build" | tee "$work/abi"
if ! grep --quiet "^There is no description" "$work/abi"; then
  rm -rf "$work/changed"
  mkdir "$work/changed"
  cp --recursive CMakeLists.txt CMakePresets.json cmake depot examples frontend include packaging platform src "$work/changed"
  sed --in-place 's/^ *int cancelTarget;/int inserted;\n&/' "$work/changed/include/tembra/association.h"
  build changed/build router "$work/changed" -DCMAKE_UNITY_BUILD=ON -DCMAKE_UNITY_BUILD_BATCH_SIZE=0 -DTEMBRA_UNITY_LIBRARIES=ON
  if tests/packaging/abi.sh "$work/changed/build" >"$work/log" 2>&1; then fail "a field more in the object is not found"; fi
  grep --quiet "'int cancelTarget' offset changed" "$work/log" || { cat "$work/log"; fail "the field that moved is not told"; }
fi

build build router-libstdcxx-inside "$source"
check_sizes 5
library=$(installed TembraAssoc)
if readelf --dynamic "$library" | grep 'NEEDED.*libstdc++'; then fail "libstdc++ is not inside"; fi
if nm --dynamic --defined-only "$library" | grep ' T _Z\(N\|NK\)\?St'; then fail "names of libstdc++ are exported"; fi
compiler=$(sed -n 's/^set(CMAKE_CXX_COMPILER "\(.*\)")/\1/p' "$work"/build/CMakeFiles/*/CMakeCXXCompiler.cmake)
logged "$compiler" -std=c++11 -Iinclude tests/packaging/logger_throws.cpp -o "$work/logger-throws" -rdynamic \
  -L"$work/build/lib" -Wl,-rpath,"$work/build/lib" -lTembraAssoc -lTembraPlatform -Wl,--allow-shlib-undefined
said=$("${run[@]}" "$work/logger-throws") || fail "the front end ended with status $?"
[[ $said == $'no log daemon\nno logger 7\nan object' ]] || fail "exceptions of the Logger do not pass: $said"
